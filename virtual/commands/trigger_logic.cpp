// TRIGger:{A|B}:LOGIc: pattern, state, and set-up and hold.
#include "virtual/commands/families.h"
#include "virtual/commands/trigger_rows.h"
#include "virtual/oscilloscope.h"

namespace virtual_scope {
namespace {

constexpr Keyword kInput = {"HIGH|LOW|X", 2};
constexpr Keyword kChannel = {kTriggerChannelWords};
constexpr Keyword kClockEdge = {kSlopeWords, 1};  // of set-up and hold, and of the state

bool HasOldLogic(const Oscilloscope& scope) {
    return (kFamiliesOfOldLogic & Families(scope.model().family)) != 0;
}

bool IsLast(const Oscilloscope& scope, int channel) {
    return channel + 1 == scope.model().channels;
}

// The last input of an older instrument is told under the pattern and the state, whose clock it is.
ScpiError RefuseOldLast(const Oscilloscope& scope, int channel) {
    return HasOldLogic(scope) && IsLast(scope, channel) ? ScpiError::kSettingsConflict
                                                        : ScpiError::kNone;
}

ScpiError RefuseAllButLast(const Oscilloscope& scope, int channel) {
    return IsLast(scope, channel) ? ScpiError::kNone : ScpiError::kSettingsConflict;
}

}  // namespace

std::vector<CommandRow> LogicTriggerRows() {
    return {
        CommandRow("CLAss", Keyword{"PATtern|STATE|SETHold"}),
        CommandRow("FUNCtion", Keyword{"AND|NANd|NOR|OR"}),
        CommandRow("INPut:CH<x>", kInput).Refuse(RefuseOldLast),
        CommandRow("THReshold:CH<x>", kTriggerLevels),
        CommandRow("PATtern:INPut:CH<x>", kInput).Refuse(RefuseAllButLast),
        CommandRow("PATtern:WHEn", Keyword{"TRUe|FALSe|LESSThan|MOREThan"}),
        CommandRow("PATtern:WHEn:{LESSLimit|LESSThan}", kTriggerTime),
        CommandRow("PATtern:WHEn:{MORELimit|MOREThan}", kTriggerTime),
        CommandRow("STATE:INPut:CH<x>", kClockEdge).Refuse(RefuseAllButLast),
        CommandRow("STATE:WHEn", Keyword{"FALSe|TRUe", 1}),
        CommandRow("SETHold:DATa:SOUrce", kChannel),
        CommandRow("SETHold:DATa:THReshold", kTriggerLevels),
        CommandRow("SETHold:CLOCk:SOUrce", Keyword{kTriggerChannelWords, 1}),
        CommandRow("SETHold:CLOCk:THReshold", kTriggerLevels),
        CommandRow("SETHold:CLOCk:EDGE", kClockEdge),
        CommandRow("SETHold:SETTime", Real{-100e-9, 100e-9, 2e-9}),
        CommandRow("SETHold:HOLDTime", Real{-1e-9, 100e-9, 2e-9}),
    };
}

}  // namespace virtual_scope
