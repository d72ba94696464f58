// Logic triggers of both events: inputs by channel, the clock of a state, and patterns. Where the
// inputs stand in the command tree differs with the family and with the number of channels.
#pragma once

#include "core/member_call.h"
#include "kestrion/enums.h"

namespace kestrion {

// Each runs inside of the member that it is the body of; event and tokens are those of the running
// member.
HRESULT ReadChannelLogic(MemberCall& call, KestrionChannelEnum channel,
                         KestrionTriggerLogicInputChannelEnum* logic);
HRESULT WriteChannelLogic(MemberCall& call, KestrionChannelEnum channel,
                          KestrionTriggerLogicInputChannelEnum logic);
HRESULT ReadClockEdge(MemberCall& call, KestrionTriggerSlopeEnum* edge);
HRESULT WriteClockEdge(MemberCall& call, KestrionTriggerSlopeEnum edge);

// A pattern of four channels. Thresholds in volts, the time in seconds.
struct ChannelInput {
    KestrionTriggerLogicInputChannelEnum logic = KestrionTriggerLogicInputChannelHigh;
    double threshold = 0.0;
};
struct LogicPattern {
    ChannelInput inputs[4];
    KestrionTriggerPatternTypeEnum type = KestrionTriggerPatternTypeAND;
    KestrionTriggerPatternConditionEnum condition = KestrionTriggerPatternConditionTrue;
    double time = 0.0;
};

// A model of two channels takes the first two inputs.
HRESULT WritePattern(MemberCall& call, const LogicPattern& pattern);
// The time is asked for under a condition that has one, and stays 0 under another. Inputs that a
// model of two channels lacks keep what they hold.
HRESULT ReadPattern(MemberCall& call, LogicPattern& pattern);

}  // namespace kestrion
