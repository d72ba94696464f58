// TRIGger:{A|B}:PULse: glitch, runt, time-out, transition, width and window.
#include "virtual/commands/families.h"
#include "virtual/commands/rows.h"
#include "virtual/commands/trigger_rows.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kClasses = "GLItch|RUNt|WIDth|TRANsition|TIMEOut|WINdow";
constexpr std::string_view kConditions = "OCCurs|WIDERthan|LOGIc";
constexpr std::string_view kTimeoutPolarities = "STAYSHigh|STAYSLow|EITher";
constexpr Keyword kPolarity = {kPolarityWords};
constexpr Keyword kQualifier = {"OCCurs|LOGIc"};
constexpr Keyword kInput = {"HIGH|LOW|X", 2};
constexpr Real kLowThreshold = {-100, 100, 0.8};
constexpr Real kHighThreshold = {-100, 100, 2};

std::vector<CommandRow> Thresholds() {
    return {
        CommandRow("LOW", kLowThreshold),
        CommandRow("HIGH", kHighThreshold),
    };
}

// What a runt and a window have in common.
std::vector<CommandRow> Qualified() {
    return {
        CommandRow("POLarity", kPolarity),
        CommandRow("WHEn", Keyword{kConditions}),
        CommandRow("WIDth", kTriggerTime),
        CommandRow("QUAlify", kQualifier).LackedBy(kFamiliesOfOldLogic),
        CommandRow("LOGIc:INPut:CH<x>", kInput).LackedBy(kFamiliesOfNewLogic),
        CommandRow("LOGIc:THReshold:CH<x>", kTriggerLevels).LackedBy(kFamiliesOfNewLogic),
    };
}

}  // namespace

std::vector<CommandRow> PulseTriggerRows() {
    std::vector<CommandRow> rows = {
        CommandRow("CLAss", Keyword{kClasses}),
        CommandRow("SOUrce", Keyword{kTriggerChannelWords}),
        CommandRow("GLItch:POLarity", kPolarity),
        CommandRow("GLItch:TRIGIF", Keyword{"ACCept|REJect"}),
        CommandRow("GLItch:WIDth", kTriggerTime),
        CommandRow("GLItch:QUAlify", kQualifier).LackedBy(kFamiliesOfOldLogic),
        CommandRow("TIMEOut:POLarity", Keyword{kTimeoutPolarities}),
        CommandRow("TIMEOut:TIMe", kTriggerTime),
        CommandRow("TIMEOut:QUAlify", kQualifier).LackedBy(kFamiliesOfOldLogic),
        CommandRow("TRANsition:POLarity", kPolarity),
        CommandRow("TRANsition:WHEn", Keyword{"FASTERthan|SLOWERthan"}),
        CommandRow("TRANsition:DELTATime", kTriggerTime),
        CommandRow("TRANsition:QUAlify", kQualifier).LackedBy(kFamiliesOfOldLogic),
        CommandRow("WIDth:POLarity", Keyword{"POSITIVe|NEGAtive"}),
        CommandRow("WIDth:WHEn", Keyword{"WIThin|OUTside"}),
        CommandRow("WIDth:LOWLimit", kTriggerTime),
        CommandRow("WIDth:HIGHLimit", Real{100e-12, 1e6, 20e-9}),
        CommandRow("WIDth:QUAlify", kQualifier).LackedBy(kFamiliesOfOldLogic),
        CommandRow("WINdow:TYPe", Keyword{"INSide|OUTside"}),
    };
    Append(Under("RUNt:THReshold:", Thresholds()), rows);
    Append(Under("TRANsition:THReshold:", Thresholds()), rows);
    Append(Under("WINdow:THReshold:", Thresholds()), rows);
    Append(Under("RUNt:", Qualified()), rows);
    Append(Under("WINdow:", Qualified()), rows);
    return rows;
}

}  // namespace virtual_scope
