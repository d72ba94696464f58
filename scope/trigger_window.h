// The window trigger of both events.
#pragma once

#include "core/member_call.h"
#include "kestrion/enums.h"

namespace kestrion {

// The width in seconds, thresholds in volts.
struct WindowSettings {
    KestrionChannelEnum source;
    KestrionTriggerWindowTypeEnum type;
    KestrionTriggerWindowConditionEnum condition;
    double width;
    double thresholdLow;
    double thresholdHigh;
};

// The body of Configure, for the event of the running member.
HRESULT ConfigureWindow(MemberCall& call, const WindowSettings& settings);

}  // namespace kestrion
