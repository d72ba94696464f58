#include "scope/trigger_other_channels.h"

#include <string>

#include "platform/text.h"
#include "scope/trigger_families.h"
#include "scope/trigger_tokens.h"

namespace kestrion {
namespace {

// The states have one set of words, which the window's members list.
constexpr TokenSet kStates("KestrionTriggerWindowLogicInputEnum",
                           "IKestrionTriggerWindow.ChAInput");

// "ChAInput" of "IKestrionTriggerRunt.ChAInput".
std::string_view RunningMember(MemberCall& call) {
    const std::string_view key = call.Method().fullName;
    return key.substr(key.find('.') + 1);
}

// The number of the first of the channels that are not the source.
HRESULT FindOthers(MemberCall& call, int& first) {
    if (call.InstrumentHasTwoChannels()) {
        return call.Errors().ReportValueNotSupported(RunningMember(call), "val");
    }
    std::string reply;
    const HRESULT status =
        call.QueryText(std::string("TRIGGER:") + EventOf(call) + ":PULSE:SOURCE?", reply);
    if (Failed(status)) {
        return status;
    }
    const std::string_view source = Trim(reply);
    if (source == "CH1" || source == "CH2") {
        first = 3;
        return S_OK;
    }
    if (source == "CH3" || source == "CH4") {
        first = 1;
        return S_OK;
    }
    return call.Errors().ReportUnexpectedResponse({});
}

HRESULT FindPath(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                 std::string_view what, std::string& path) {
    int channel = 0;
    if (const HRESULT status = FindOthers(call, channel); Failed(status)) {
        return status;
    }
    if (which == OtherChannel::kSecond) {
        ++channel;
    }
    path = std::string("TRIGGER:") + EventOf(call);
    if (logic.ownPathsOnOldFamilies && !HasSharedLogicInputs(call)) {
        path.append(":PULSE:").append(logic.pulse);
    }
    path.append(":LOGIC:").append(what).append(":CH").append(std::to_string(channel));
    return S_OK;
}

}  // namespace

HRESULT ReadOtherInput(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                       KestrionTriggerWindowLogicInputEnum* state) {
    std::string path;
    HRESULT status = FindPath(call, logic, which, "INPUT", path);
    std::string reply;
    if (Succeeded(status)) {
        status = call.QueryText(path + "?", reply);
    }
    return Failed(status) ? status : kStates.FromToken(call, reply, state);
}

HRESULT WriteOtherInput(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                        KestrionTriggerWindowLogicInputEnum state) {
    std::string token;
    HRESULT status = kStates.ToToken(call, state, "val", token);
    std::string path;
    if (Succeeded(status)) {
        status = FindPath(call, logic, which, "INPUT", path);
    }
    return Failed(status) ? status : call.Write("%$Cs %$Cs", &path, &token);
}

HRESULT ReadOtherThreshold(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                           double* threshold) {
    std::string path;
    const HRESULT status = FindPath(call, logic, which, "THRESHOLD", path);
    return Failed(status) ? status : call.QueryDouble(path + "?", *threshold);
}

HRESULT WriteOtherThreshold(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                            double threshold) {
    std::string path;
    const HRESULT status = FindPath(call, logic, which, "THRESHOLD", path);
    return Failed(status) ? status : call.Write("%$Cs %g", &path, threshold);
}

HRESULT ConfigureOtherChannels(MemberCall& call, const PulseLogic& logic, const OtherInput& first,
                               const OtherInput& second) {
    std::string firstState;
    std::string secondState;
    HRESULT status = kStates.ToToken(call, first.state, "ChAInput", firstState);
    if (Succeeded(status)) {
        status = kStates.ToToken(call, second.state, "ChBInput", secondState);
    }
    int channel = 0;
    if (Succeeded(status)) {
        status = FindOthers(call, channel);
    }
    if (Failed(status)) {
        return status;
    }
    if (HasSharedLogicInputs(call)) {
        return call.Write(
            "TRIGGER:%s:PULSE:%s:QUALIFY LOGIC;:TRIGGER:%s:LOGIC:INPUT:CH%d %$Cs;CH%d %$Cs;"
            ":TRIGGER:%s:LOGIC:THRESHOLD:CH%d %g;CH%d %g",
            EventOf(call), logic.pulse, EventOf(call), channel, &firstState, channel + 1,
            &secondState, EventOf(call), channel, first.threshold, channel + 1, second.threshold);
    }
    return call.Write(
        "TRIGGER:%s:PULSE:%s:WHEN LOGIC;LOGIC:INPUT:CH%d %$Cs;CH%d %$Cs;"
        ":TRIGGER:%s:PULSE:%s:LOGIC:THRESHOLD:CH%d %g;CH%d %g",
        EventOf(call), logic.pulse, channel, &firstState, channel + 1, &secondState, EventOf(call),
        logic.pulse, channel, first.threshold, channel + 1, second.threshold);
}

}  // namespace kestrion
