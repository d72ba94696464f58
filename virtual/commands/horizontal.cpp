// HORizontal: the time base. The record always lasts ten divisions, so that of record length, scale
// and sample rate the third follows from the other two.
#include "virtual/command_table.h"
#include "virtual/commands/families.h"
#include "virtual/oscilloscope.h"
#include "virtual/record.h"

namespace virtual_scope {
namespace {

constexpr Real kScale = {10e-12, 1000, 400e-6};
constexpr Real kPercent = {0, 100, 50};

void Restart(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.RestartAcquisition();
}

double RecordPoints(const Oscilloscope& scope) {
    return static_cast<double>(scope.settings().Whole(SettingId::kRecordLength));
}

double ScaleFor(const Oscilloscope& scope, const Value& sampleRate) {
    return RecordPoints(scope) / (kDivisions * std::get<double>(sampleRate));
}

Value SampleRate(Oscilloscope& scope, int /*instance*/) {
    return RecordPoints(scope) /
           (kDivisions * scope.settings().Number(SettingId::kHorizontalScale));
}

// The record length stays, the scale follows.
ScpiError CheckSampleRate(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const double scale = ScaleFor(scope, value);
    return scale < kScale.low || scale > kScale.high ? ScpiError::kDataOutOfRange
                                                     : ScpiError::kNone;
}

void ApplySampleRate(Oscilloscope& scope, int /*instance*/, const Value& value) {
    scope.settings().Set(SettingId::kHorizontalScale, 0, ScaleFor(scope, value));
    scope.RestartAcquisition();
}

Value RecordLength(Oscilloscope& scope, int /*instance*/) {
    return scope.settings().Whole(SettingId::kRecordLength);
}

}  // namespace

std::vector<CommandRow> HorizontalCommands() {
    using enum SettingId;
    return {
        CommandRow("HORizontal[:MAIn|:MODE]:SCAle", kScale).As(kHorizontalScale).Then(Restart),
        CommandRow("HORizontal[:MAIn|:MODE]:{RECOrdlength|RESOlution}",
                   Integer{1000, 100'000'000, 10000})
            .As(kRecordLength)
            .Then(Restart),
        CommandRow("HORizontal[:MAIn|:MODE]:SAMPLERate", Real{1e-3, 1e18, 2.5e6})
            .Get(SampleRate)
            .Check(CheckSampleRate)
            .Then(ApplySampleRate),
        CommandRow("HORizontal[:MAIn][:TRIGger]:POSition", kPercent)
            .As(kHorizontalPosition)
            .Then(Restart),
        CommandRow("HORizontal[:MAIn]:DELay:MODe", Flag{}).As(kDelayMode).Then(Restart),
        CommandRow("HORizontal[:MAIn]:DELay:TIMe", Real{-1e6, 1e6, 0}).As(kDelayTime).Then(Restart),
        CommandRow("HORizontal[:MAIn]:DELay:POSition", kPercent).As(kDelayPosition).Then(Restart),
        CommandRow("HORizontal:MODE", Keyword{"AUTO|CONStant|MANual"}).LackedBy(kOlderFamilies),
        CommandRow("HORizontal:MODE:AUTO:LIMITrecordlen", Integer{1000, 100'000'000, 100'000'000})
            .LackedBy(kOlderFamilies),
        CommandRow("HORizontal:DIVisions?", Integer{10, 10, 10}),
        CommandRow("HORizontal[:MAIn]:UNIts[:STRing]", Text{"s", 10}),
        CommandRow("HORizontal:ROLL", Keyword{"AUTO|OFF|ON"}),
        CommandRow("HORizontal:DIGital:RECOrdlength?", Integer{1000, 100'000'000, 10000})
            .Get(RecordLength),
        CommandRow("HORizontal:DIGital:SAMPLERate?", Real{1e-3, 1e18, 2.5e6}).Get(SampleRate),
        CommandRow("HORizontal:DIGital:MAGnivu:POSition", kPercent),
    };
}

}  // namespace virtual_scope
