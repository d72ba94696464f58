#include "scope/trigger_window.h"

#include "scope/trigger_families.h"

namespace kestrion {
namespace {

// Logic needs two channels besides the source, and an instrument that looks at them.
bool LacksLogic(MemberCall& call) {
    return call.InstrumentHasTwoChannels() || call.InstrumentInFamily("HeronB Series");
}

}  // namespace

HRESULT ConfigureWindow(MemberCall& call, const WindowSettings& settings) {
    if ((settings.source == KestrionChannelCh3 || settings.source == KestrionChannelCh4) &&
        call.InstrumentHasTwoChannels()) {
        return call.Errors().ReportDetail(message::kChannelRefused, "Configure", {"Source"});
    }
    if (settings.condition == KestrionTriggerWindowConditionLogic && LacksLogic(call)) {
        return call.Errors().ReportValueNotSupported("KestrionTriggerWindowConditionLogic",
                                                     "Window", "Configure");
    }
    const char* format = HasSharedLogicInputs(call)
                             ? "TRIGGER:%s:TYPE PULSE;PULSE:CLASS WINDOW;"
                               "SOURCE %{KestrionChannelEnum}s;"
                               "WINDOW:TYPE %{KestrionTriggerWindowTypeEnum}s;"
                               "QUALIFY %{KestrionTriggerWindowConditionEnum}s;"
                               "WIDTH %g;THRESHOLD:LOW %g;HIGH %g;"
                             : "TRIGGER:%s:TYPE PULSE;PULSE:CLASS WINDOW;"
                               "SOURCE %{KestrionChannelEnum}s;"
                               "WINDOW:TYPE %{KestrionTriggerWindowTypeEnum}s;"
                               "WHEN %{KestrionTriggerWindowConditionEnum}s;"
                               "WIDTH %g;THRESHOLD:LOW %g;HIGH %g;";
    return call.Write(format, EventOf(call), settings.source, settings.type, settings.condition,
                      settings.width, settings.thresholdLow, settings.thresholdHigh);
}

}  // namespace kestrion
