// TRIGger: the events A and B, their sequence, and the edge trigger.
#include <string>
#include <utility>

#include "virtual/command_table.h"
#include "virtual/commands/families.h"
#include "virtual/commands/rows.h"
#include "virtual/commands/trigger_rows.h"
#include "virtual/edge_trigger.h"
#include "virtual/oscilloscope.h"

namespace virtual_scope {
namespace {

constexpr Keyword kBTypes = {"EDGE|LOGIc|PULse"};
constexpr std::string_view kACouplings = "AC|DC|HFRej|LFRej|NOISErej";
constexpr std::string_view kBCouplings = "AC|DC|NOISErej";
constexpr std::string_view kResetTypes = "NONE|TIMEOut|TRANsition|STATE|EVENTS|TIMe";
constexpr std::string_view kStates = "ARMed|AUTO|READY|SAVe|TRIGger";

enum class TriggerState { kArmed, kAuto, kReady, kSave, kTrigger };

void Restart(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.RestartAcquisition();
}

void Force(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.ForceTrigger();
}

Value StateOf(Oscilloscope& scope, int /*instance*/) {
    using enum TriggerState;
    if (!scope.acquisition().IsRunning()) {
        return static_cast<std::int64_t>(kSave);
    }
    if (scope.acquisition().IsWaiting()) {
        return static_cast<std::int64_t>(kReady);
    }
    const bool triggered = FindTrigger(scope.CurrentRecord(), EdgeTriggerOf(scope)).has_value();
    return static_cast<std::int64_t>(triggered ? kTrigger : kAuto);
}

// Half-way between the lowest and the highest value of the edge's source.
void SetLevelToMiddle(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.settings().Set(SettingId::kTriggerLevel, 0,
                         MiddleOf(scope.CurrentRecord(), EdgeTriggerOf(scope).source));
    scope.RestartAcquisition();
}

ScpiError CheckType(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const Family family = scope.model().family;
    const auto type = static_cast<TriggerType>(std::get<std::int64_t>(value));
    const bool lacked = (type == TriggerType::kVideo && family != Family::kHeron) ||
                        (type == TriggerType::kSerial && family == Family::kHeron);
    return lacked ? ScpiError::kSettingsConflict : ScpiError::kNone;
}

// Both edges at once is for the newer families.
ScpiError CheckSlope(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const bool either =
        static_cast<TriggerSlope>(std::get<std::int64_t>(value)) == TriggerSlope::kEither;
    const bool newer = (kFamiliesOfNewLogic & Families(scope.model().family)) != 0;
    return either && !newer ? ScpiError::kSettingsConflict : ScpiError::kNone;
}

std::vector<CommandRow> AEdge() {
    using enum SettingId;
    return {
        CommandRow("SOUrce", Keyword{kEdgeSourceWords}).As(kEdgeSource).Then(Restart),
        CommandRow("SLOpe", Keyword{kSlopeWords, 1}).As(kEdgeSlope).Check(CheckSlope).Then(Restart),
        CommandRow("COUPling", Keyword{kACouplings, 1}),
    };
}

std::vector<CommandRow> BEdge() {
    return {
        CommandRow("SOUrce", Keyword{kEdgeSourceWords}),
        CommandRow("SLOpe", Keyword{kSlopeWords, 1}).Check(CheckSlope),
        CommandRow("COUPling", Keyword{kBCouplings, 1}),
    };
}

std::vector<CommandRow> AOnly() {
    using enum SettingId;
    return {
        CommandRow("", Keyword{"SETLevel"}).SetOnly().Then(SetLevelToMiddle),
        CommandRow(":TYPe", Keyword{kTriggerTypeWords})
            .As(kTriggerType)
            .Check(CheckType)
            .Then(Restart),
        CommandRow(":LEVel", kTriggerLevels).As(kTriggerLevel).Then(Restart),
        CommandRow(":MODe", Keyword{"AUTO|NORMal"}).As(kTriggerMode).Then(Restart),
        CommandRow(":HOLDoff:BY", Keyword{"DEFAULt|TIMe|RANDom|AUTO"}),
        CommandRow(":HOLDoff:TIMe", Real{250e-9, 12, 1.5e-6}).As(kHoldoffTime),
        CommandRow(":HOLDoff:ACTual?", Real{0, 12, 1.5e-6}).Get([](Oscilloscope& scope, int) {
            return Value(scope.settings().Number(SettingId::kHoldoffTime));
        }),
    };
}

std::vector<CommandRow> BOnly() {
    return {
        CommandRow("", Keyword{"SETLevel"}).SetOnly(),
        CommandRow(":TYPe", kBTypes),
        CommandRow(":LEVel", kTriggerLevels),
        CommandRow(":STATE", Flag{}),
        CommandRow(":BY", Keyword{"EVENTS|TIMe", 1}),
        CommandRow(":TIMe", Real{3.2e-9, 3e6, 16e-9}),
        CommandRow(":EVENTS:COUNt", Integer{1, 10'000'000, 1}),
        CommandRow(":RESET:TYPe", Keyword{kResetTypes}),
        CommandRow(":RESET:SOUrce", Keyword{"CH1|CH2|CH3|CH4|AUXiliary"}),
        CommandRow(":RESET:STATE", Keyword{"HIGH|LOW"}),
        CommandRow(":RESET:THReshold", kTriggerLevels),
        CommandRow(":RESET:TIMEOut[:TIMe]", kTriggerTime),
        CommandRow(":RESET:TRANsition", Keyword{"RISe|FALL"}),
    };
}

// What both events have.
std::vector<CommandRow> Both() {
    std::vector<CommandRow> rows = {
        CommandRow("READY?", Flag{.initial = true}),
        CommandRow("LEVel:CH<x>", kTriggerLevels),
    };
    Append(Under("PULse:", PulseTriggerRows()), rows);
    Append(Under("LOGIc:", LogicTriggerRows()), rows);
    return rows;
}

}  // namespace

std::vector<CommandRow> TriggerCommands() {
    std::vector<CommandRow> rows = {
        CommandRow("TRIGger", Keyword{"FORCe"}).SetOnly().Then(Force),
        CommandRow("TRIGger:STATE?", Keyword{kStates}).Get(StateOf),
        CommandRow("TRIGger:AUXLevel", kTriggerLevels),
        CommandRow("TRIGger:LVLSrcpreference", Keyword{"SRCDEPendent|SRCINDependent"}),
    };
    Append(Under("TRIGger:A", AOnly()), rows);
    Append(Under("TRIGger:B", BOnly()), rows);
    Append(Under("TRIGger:A:EDGE:", AEdge()), rows);
    Append(Under("TRIGger:B:EDGE:", BEdge()), rows);
    Append(Under("TRIGger:A:", Both()), rows);
    Append(Under("TRIGger:B:", Both()), rows);
    Append(Under("TRIGger:A:", SerialTriggerRows()), rows);
    return rows;
}

}  // namespace virtual_scope
