// Runts and windows as the B event.
#include "generated/hooks/IKestrionTriggerBRunt.h"
#include "generated/hooks/IKestrionTriggerBWindow.h"
#include "scope/trigger_families.h"
#include "scope/trigger_other_channels.h"
#include "scope/trigger_window.h"

namespace kestrion::hooks {
namespace {

// The states have one set of words, which the window's members list.
constexpr std::string_view kWords = "IKestrionTriggerBWindow.ChAInput";
constexpr PulseLogic kRunt = {kEventB, "RUNT", false, kWords};
constexpr PulseLogic kWindow = {kEventB, "WINDOW", true, kWords};

}  // namespace

namespace IKestrionTriggerBRunt {

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

}  // namespace IKestrionTriggerBRunt

namespace IKestrionTriggerBWindow {

HRESULT Configure(MemberCall& call, KestrionChannelEnum Source, KestrionTriggerWindowTypeEnum Type,
                  KestrionTriggerWindowConditionEnum Condition, double Width, double ThresholdLow,
                  double ThresholdHigh) {
    return ConfigureWindow(call, kEventB,
                           {Source, Type, Condition, Width, ThresholdLow, ThresholdHigh});
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

}  // namespace IKestrionTriggerBWindow

}  // namespace kestrion::hooks
