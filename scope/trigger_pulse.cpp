// Runts and windows of both events.
#include "generated/hooks/IKestrionTriggerRunt.h"
#include "generated/hooks/IKestrionTriggerWindow.h"
#include "scope/trigger_other_channels.h"
#include "scope/trigger_window.h"

namespace kestrion::hooks {
namespace {

constexpr PulseLogic kRunt = {"RUNT", false};
constexpr PulseLogic kWindow = {"WINDOW", true};

}  // namespace

namespace IKestrionTriggerRunt {

HRESULT ConfigureLogicCondition(MemberCall& call, KestrionTriggerWindowLogicInputEnum ChAInput,
                                KestrionTriggerWindowLogicInputEnum ChBInput, double ChAThreshold,
                                double ChBThreshold) {
    return ConfigureOtherChannels(call, kRunt, {ChAInput, ChAThreshold}, {ChBInput, ChBThreshold});
}

HRESULT get_ChAInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum* val) {
    return ReadOtherInput(call, kRunt, OtherChannel::kFirst, val);
}

HRESULT put_ChAInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum val) {
    return WriteOtherInput(call, kRunt, OtherChannel::kFirst, val);
}

HRESULT get_ChAThreshold(MemberCall& call, double* val) {
    return ReadOtherThreshold(call, kRunt, OtherChannel::kFirst, val);
}

HRESULT put_ChAThreshold(MemberCall& call, double val) {
    return WriteOtherThreshold(call, kRunt, OtherChannel::kFirst, val);
}

HRESULT get_ChBInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum* val) {
    return ReadOtherInput(call, kRunt, OtherChannel::kSecond, val);
}

HRESULT put_ChBInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum val) {
    return WriteOtherInput(call, kRunt, OtherChannel::kSecond, val);
}

HRESULT get_ChBThreshold(MemberCall& call, double* val) {
    return ReadOtherThreshold(call, kRunt, OtherChannel::kSecond, val);
}

HRESULT put_ChBThreshold(MemberCall& call, double val) {
    return WriteOtherThreshold(call, kRunt, OtherChannel::kSecond, val);
}

}  // namespace IKestrionTriggerRunt

namespace IKestrionTriggerWindow {

HRESULT Configure(MemberCall& call, KestrionChannelEnum Source, KestrionTriggerWindowTypeEnum Type,
                  KestrionTriggerWindowConditionEnum Condition, double Width, double ThresholdLow,
                  double ThresholdHigh) {
    return ConfigureWindow(call, {Source, Type, Condition, Width, ThresholdLow, ThresholdHigh});
}

HRESULT ConfigureLogicCondition(MemberCall& call, KestrionTriggerWindowLogicInputEnum ChAInput,
                                KestrionTriggerWindowLogicInputEnum ChBInput, double ChAThreshold,
                                double ChBThreshold) {
    return ConfigureOtherChannels(call, kWindow, {ChAInput, ChAThreshold},
                                  {ChBInput, ChBThreshold});
}

HRESULT get_ChAInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum* val) {
    return ReadOtherInput(call, kWindow, OtherChannel::kFirst, val);
}

HRESULT put_ChAInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum val) {
    return WriteOtherInput(call, kWindow, OtherChannel::kFirst, val);
}

HRESULT get_ChAThreshold(MemberCall& call, double* val) {
    return ReadOtherThreshold(call, kWindow, OtherChannel::kFirst, val);
}

HRESULT put_ChAThreshold(MemberCall& call, double val) {
    return WriteOtherThreshold(call, kWindow, OtherChannel::kFirst, val);
}

HRESULT get_ChBInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum* val) {
    return ReadOtherInput(call, kWindow, OtherChannel::kSecond, val);
}

HRESULT put_ChBInput(MemberCall& call, KestrionTriggerWindowLogicInputEnum val) {
    return WriteOtherInput(call, kWindow, OtherChannel::kSecond, val);
}

HRESULT get_ChBThreshold(MemberCall& call, double* val) {
    return ReadOtherThreshold(call, kWindow, OtherChannel::kSecond, val);
}

HRESULT put_ChBThreshold(MemberCall& call, double val) {
    return WriteOtherThreshold(call, kWindow, OtherChannel::kSecond, val);
}

}  // namespace IKestrionTriggerWindow

}  // namespace kestrion::hooks
