// MATH<x>: waveforms that are computed from others.
#include <string>
#include <utility>

#include "virtual/command_table.h"
#include "virtual/oscilloscope.h"

namespace virtual_scope {
namespace {

ScpiError CheckDefinition(Oscilloscope& scope, int number, const Value& value) {
    MathPointer definition;
    return ParseMath(std::get<std::string>(value), number, scope.model().channels, definition);
}

void ApplyDefinition(Oscilloscope& scope, int number, const Value& value) {
    MathPointer definition;
    if (ParseMath(std::get<std::string>(value), number, scope.model().channels, definition) ==
        ScpiError::kNone) {
        scope.SetMath(number, std::move(definition));
    }
}

Value Definition(const char* text) {
    return std::string(text);
}

}  // namespace

std::vector<CommandRow> MathCommands() {
    return {
        CommandRow("MATH<x>:DEFine", Text{"", 256})
            .As(SettingId::kMathDefinition)
            .Initially({Definition("CH1-CH2"), Definition("CH1+CH2"), Definition("CH1*CH2"),
                        Definition("CH1")})
            .Check(CheckDefinition)
            .Then(ApplyDefinition),
    };
}

}  // namespace virtual_scope
