// Patterns and states of both events.
#include "generated/hooks/IKestrionTriggerPattern.h"
#include "generated/hooks/IKestrionTriggerState.h"
#include "scope/trigger_logic.h"

namespace kestrion::hooks {

namespace IKestrionTriggerPattern {

HRESULT Configure(MemberCall& call, KestrionTriggerLogicInputChannelEnum Ch1Input,
                  double Ch1Threshold, KestrionTriggerLogicInputChannelEnum Ch2Input,
                  double Ch2Threshold, KestrionTriggerLogicInputChannelEnum Ch3Input,
                  double Ch3Threshold, KestrionTriggerLogicInputChannelEnum Ch4Input,
                  double Ch4Threshold, KestrionTriggerPatternTypeEnum Type,
                  KestrionTriggerPatternConditionEnum Condition, double Time) {
    const LogicPattern pattern{.inputs = {{Ch1Input, Ch1Threshold},
                                          {Ch2Input, Ch2Threshold},
                                          {Ch3Input, Ch3Threshold},
                                          {Ch4Input, Ch4Threshold}},
                               .type = Type,
                               .condition = Condition,
                               .time = Time};
    return WritePattern(call, pattern);
}

HRESULT Read(MemberCall& call, KestrionTriggerLogicInputChannelEnum* Ch1Input, double* Ch1Threshold,
             KestrionTriggerLogicInputChannelEnum* Ch2Input, double* Ch2Threshold,
             KestrionTriggerLogicInputChannelEnum* Ch3Input, double* Ch3Threshold,
             KestrionTriggerLogicInputChannelEnum* Ch4Input, double* Ch4Threshold,
             KestrionTriggerPatternTypeEnum* Type, KestrionTriggerPatternConditionEnum* Condition,
             double* Time) {
    LogicPattern pattern;
    if (const HRESULT status = ReadPattern(call, pattern); Failed(status)) {
        return status;
    }
    *Ch1Input = pattern.inputs[0].logic;
    *Ch1Threshold = pattern.inputs[0].threshold;
    *Ch2Input = pattern.inputs[1].logic;
    *Ch2Threshold = pattern.inputs[1].threshold;
    *Ch3Input = pattern.inputs[2].logic;
    *Ch3Threshold = pattern.inputs[2].threshold;
    *Ch4Input = pattern.inputs[3].logic;
    *Ch4Threshold = pattern.inputs[3].threshold;
    *Type = pattern.type;
    *Condition = pattern.condition;
    *Time = pattern.time;
    return S_OK;
}

HRESULT get_ChannelLogic(MemberCall& call, KestrionChannelEnum Channel,
                         KestrionTriggerLogicInputChannelEnum* val) {
    return ReadChannelLogic(call, Channel, val);
}

HRESULT put_ChannelLogic(MemberCall& call, KestrionChannelEnum Channel,
                         KestrionTriggerLogicInputChannelEnum val) {
    return WriteChannelLogic(call, Channel, val);
}

}  // namespace IKestrionTriggerPattern

namespace IKestrionTriggerState {

HRESULT get_ChannelLogic(MemberCall& call, KestrionChannelEnum Channel,
                         KestrionTriggerLogicInputChannelEnum* val) {
    return ReadChannelLogic(call, Channel, val);
}

HRESULT put_ChannelLogic(MemberCall& call, KestrionChannelEnum Channel,
                         KestrionTriggerLogicInputChannelEnum val) {
    return WriteChannelLogic(call, Channel, val);
}

HRESULT get_ClockEdge(MemberCall& call, KestrionTriggerSlopeEnum* val) {
    return ReadClockEdge(call, val);
}

HRESULT put_ClockEdge(MemberCall& call, KestrionTriggerSlopeEnum val) {
    return WriteClockEdge(call, val);
}

}  // namespace IKestrionTriggerState

}  // namespace kestrion::hooks
