// Patterns of both events, as one line and as one reading.
#include <array>
#include <string>

#include "scope/step_sequence.h"
#include "scope/trigger_families.h"
#include "scope/trigger_logic.h"
#include "scope/trigger_tokens.h"

namespace kestrion {
namespace {

// A whole pattern has the words of its single settings.
constexpr TokenSet kStates("KestrionTriggerLogicInputChannelEnum",
                           "IKestrionTriggerPattern.ChannelLogic");
constexpr TokenSet kTypes("KestrionTriggerPatternTypeEnum", "IKestrionTriggerPattern.Type");
constexpr TokenSet kConditions("KestrionTriggerPatternConditionEnum",
                               "IKestrionTriggerPattern.Condition");

constexpr const char* kLogicNames[] = {"Ch1Input", "Ch2Input", "Ch3Input", "Ch4Input"};

struct PatternTokens {
    std::array<std::string, 4> states;
    std::string type;
    std::string condition;
};

HRESULT ToTokens(MemberCall& call, const LogicPattern& pattern, std::size_t channels,
                 PatternTokens& tokens) {
    HRESULT status = S_OK;
    for (std::size_t i = 0; i < channels && Succeeded(status); ++i) {
        status = kStates.ToToken(call, pattern.inputs[i].logic, kLogicNames[i], tokens.states[i]);
    }
    if (Succeeded(status)) {
        status = kTypes.ToToken(call, pattern.type, "Type", tokens.type);
    }
    if (Succeeded(status)) {
        status = kConditions.ToToken(call, pattern.condition, "Condition", tokens.condition);
    }
    return status;
}

HRESULT FromTokens(MemberCall& call, const PatternTokens& tokens, std::size_t channels,
                   LogicPattern& pattern) {
    HRESULT status = S_OK;
    for (std::size_t i = 0; i < channels && Succeeded(status); ++i) {
        status = kStates.FromToken(call, tokens.states[i], &pattern.inputs[i].logic);
    }
    if (Succeeded(status)) {
        status = kTypes.FromToken(call, tokens.type, &pattern.type);
    }
    return Failed(status) ? status
                          : kConditions.FromToken(call, tokens.condition, &pattern.condition);
}

HRESULT Completed(HRESULT status) {
    return status == IoStatusMoreData ? S_OK : status;
}

HRESULT QueryTwoChannels(MemberCall& call, LogicPattern& pattern, PatternTokens& tokens) {
    const char* event = EventOf(call);
    return Completed(call.Session().Queryf(
        "TRIGGER:%s:LOGIC:INPUT:CH1?;:TRIGGER:%s:LOGIC:PATTERN:INPUT:CH2?;"
        ":TRIGGER:%s:LOGIC:THRESHOLD:CH1?;CH2?;:TRIGGER:%s:LOGIC:FUNCTION?;"
        ":TRIGGER:%s:LOGIC:PATTERN:WHEN?",
        "%$C[^;];%$C[^;];%lg;%lg;%$C[^;];%$C[^;]", event, event, event, event, event,
        &tokens.states[0], &tokens.states[1], &pattern.inputs[0].threshold,
        &pattern.inputs[1].threshold, &tokens.type, &tokens.condition));
}

HRESULT QueryFourChannels(MemberCall& call, LogicPattern& pattern, PatternTokens& tokens) {
    const char* event = EventOf(call);
    auto& session = call.Session();
    HRESULT status = Completed(session.Queryf(
        "TRIGGER:%s:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:%s:LOGIC:PATTERN:INPUT:CH4?;",
        "%$C[^;];%$C[^;];%$C[^;];%$C[^;]", event, event, &tokens.states[0], &tokens.states[1],
        &tokens.states[2], &tokens.states[3]));
    if (Succeeded(status)) {
        status = Completed(
            session.Queryf(":TRIGGER:%s:LOGIC:THRESHOLD:CH1?;CH2?;CH3?;CH4?;", "%lg;%lg;%lg;%lg;",
                           event, &pattern.inputs[0].threshold, &pattern.inputs[1].threshold,
                           &pattern.inputs[2].threshold, &pattern.inputs[3].threshold));
    }
    if (Succeeded(status)) {
        status = Completed(
            session.Queryf(":TRIGGER:%s:LOGIC:FUNCTION?;:TRIGGER:%s:LOGIC:PATTERN:WHEN?",
                           "%$C[^;];%$C[^;]", event, event, &tokens.type, &tokens.condition));
    }
    return status;
}

HRESULT QueryTime(MemberCall& call, LogicPattern& pattern) {
    if (pattern.condition != KestrionTriggerPatternConditionLessThan &&
        pattern.condition != KestrionTriggerPatternConditionMoreThan) {
        return S_OK;
    }
    std::string word;
    const HRESULT status = kConditions.ToToken(call, pattern.condition, "Condition", word);
    return Failed(status) ? status
                          : call.QueryDouble(std::string("TRIGGER:") + EventOf(call) +
                                                 ":LOGIC:PATTERN:WHEN:" + word + "?",
                                             pattern.time);
}

}  // namespace

HRESULT WritePattern(MemberCall& call, const LogicPattern& pattern) {
    const bool two = call.InstrumentHasTwoChannels();
    PatternTokens tokens;
    const HRESULT status = ToTokens(call, pattern, two ? 2 : 4, tokens);
    if (Failed(status)) {
        return status;
    }
    const char* event = EventOf(call);
    const auto& inputs = pattern.inputs;
    if (two) {
        return call.Write(
            "TRIGGER:%s:TYPE LOGIC;LOGIC:CLASS PATTERN;INPUT:CH1 %$Cs;"
            ":TRIGGER:%s:LOGIC:PATTERN:INPUT:CH2 %$Cs;"
            ":TRIGGER:%s:LOGIC:THRESHOLD:CH1 %0.15lg;CH2 %0.15lg;"
            ":TRIGGER:%s:LOGIC:FUNCTION %$Cs;PATTERN:WHEN %$Cs;WHEN:%$Cs %0.15lg",
            event, &tokens.states[0], event, &tokens.states[1], event, inputs[0].threshold,
            inputs[1].threshold, event, &tokens.type, &tokens.condition, &tokens.condition,
            pattern.time);
    }
    return call.Write(
        "TRIGGER:%s:TYPE LOGIC;LOGIC:CLASS PATTERN;INPUT:CH1 %$Cs;CH2 %$Cs;CH3 %$Cs;"
        ":TRIGGER:%s:LOGIC:PATTERN:INPUT:CH4 %$Cs;"
        ":TRIGGER:%s:LOGIC:THRESHOLD:CH1 %0.15lg;CH2 %0.15lg;CH3 %0.15lg;CH4 %0.15lg;"
        ":TRIGGER:%s:LOGIC:FUNCTION %$Cs;PATTERN:WHEN %$Cs;WHEN:%$Cs %0.15lg",
        event, &tokens.states[0], &tokens.states[1], &tokens.states[2], event, &tokens.states[3],
        event, inputs[0].threshold, inputs[1].threshold, inputs[2].threshold, inputs[3].threshold,
        event, &tokens.type, &tokens.condition, &tokens.condition, pattern.time);
}

HRESULT ReadPattern(MemberCall& call, LogicPattern& pattern) {
    const bool two = call.InstrumentHasTwoChannels();
    PatternTokens tokens;
    HRESULT status =
        two ? QueryTwoChannels(call, pattern, tokens) : QueryFourChannels(call, pattern, tokens);
    if (Succeeded(status)) {
        status = FromTokens(call, tokens, two ? 2 : 4, pattern);
    }
    return Failed(status) ? status : QueryTime(call, pattern);
}

}  // namespace kestrion
