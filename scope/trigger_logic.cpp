#include "scope/trigger_logic.h"

#include <string>

#include "scope/trigger_families.h"
#include "scope/trigger_tokens.h"

namespace kestrion {
namespace {

// Channels 3 and 4, which a model of two channels hasn't got.
bool LacksChannel(MemberCall& call, KestrionChannelEnum channel) {
    return (channel == KestrionChannelCh3 || channel == KestrionChannelCh4) &&
           call.InstrumentHasTwoChannels();
}

// The last input of an instrument stands with the patterns, except where all inputs are shared.
bool StandsWithPatterns(MemberCall& call, KestrionChannelEnum channel) {
    if (HasSharedLogicInputs(call)) {
        return false;
    }
    return channel == KestrionChannelCh4 ||
           (channel == KestrionChannelCh2 && call.InstrumentHasTwoChannels());
}

TokenSet States(MemberCall& call) {
    return {"KestrionTriggerLogicInputChannelEnum", call.Method().fullName};
}

TokenSet Slopes(MemberCall& call) {
    return {"KestrionTriggerSlopeEnum", call.Method().fullName};
}

HRESULT FindInput(MemberCall& call, KestrionChannelEnum channel, std::string& path) {
    if (LacksChannel(call, channel)) {
        return call.Errors().ReportDetail(message::kChannelRefused, "InstrSet", {"Source"});
    }
    const TokenSet channels("KestrionChannelEnum", call.Method().fullName);
    std::string name;
    const HRESULT status = channels.ToToken(call, channel, "Channel", name);
    if (Succeeded(status)) {
        path = std::string("TRIGGER:") + EventOf(call) +
               ":LOGIC:" + (StandsWithPatterns(call, channel) ? "PATTERN:INPUT:" : "INPUT:") + name;
    }
    return status;
}

// The last channel of the model is the clock of a state.
const char* ClockChannel(MemberCall& call) {
    return call.InstrumentHasTwoChannels() ? "CH2" : "CH4";
}

}  // namespace

HRESULT ReadChannelLogic(MemberCall& call, KestrionChannelEnum channel,
                         KestrionTriggerLogicInputChannelEnum* logic) {
    std::string path;
    HRESULT status = FindInput(call, channel, path);
    if (Failed(status)) {
        return status;
    }
    // The instrument takes the input among the others with an end of its own.
    const char* end = StandsWithPatterns(call, channel) ? "?" : "?;";
    std::string reply;
    status = call.QueryText(path + end, reply);
    return Failed(status) ? status : States(call).FromToken(call, reply, logic);
}

// Nothing is formatted before all words are known: what is in the session's buffer when a format
// fails would go out with the next command.
HRESULT WriteChannelLogic(MemberCall& call, KestrionChannelEnum channel,
                          KestrionTriggerLogicInputChannelEnum logic) {
    std::string path;
    HRESULT status = FindInput(call, channel, path);
    std::string state;
    if (Succeeded(status)) {
        status = States(call).ToToken(call, logic, "val", state);
    }
    return Failed(status) ? status : call.Write("%$Cs %$Cs", &path, &state);
}

HRESULT ReadClockEdge(MemberCall& call, KestrionTriggerSlopeEnum* edge) {
    std::string reply;
    const HRESULT status = call.QueryText(
        std::string("TRIGGER:") + EventOf(call) + ":LOGIC:STATE:INPUT:" + ClockChannel(call) + "?",
        reply);
    return Failed(status) ? status : Slopes(call).FromToken(call, reply, edge);
}

HRESULT WriteClockEdge(MemberCall& call, KestrionTriggerSlopeEnum edge) {
    std::string slope;
    const HRESULT status = Slopes(call).ToToken(call, edge, "val", slope);
    return Failed(status) ? status
                          : call.Write("TRIGGER:%s:LOGIC:STATE:INPUT:%s %$Cs", EventOf(call),
                                       ClockChannel(call), &slope);
}

}  // namespace kestrion
