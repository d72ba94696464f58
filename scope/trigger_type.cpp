// IKestrionTrigger: one enumeration for what the instrument has in three levels, a type and the
// classes of pulses and of logic.
#include <string>

#include "core/member_call.h"
#include "generated/hooks/IKestrionTrigger.h"
#include "platform/text.h"
#include "scope/step_sequence.h"

namespace kestrion::hooks::IKestrionTrigger {
namespace {

// The name under which a model doesn't have the type; empty for a type that it has.
std::string_view RefusedType(MemberCall& call, KestrionTriggerTypeEnum type) {
    const bool heron = call.InstrumentInFamily("Heron Series");
    if (type == KestrionTriggerTypeVideo && !heron) {
        return "KestrionTriggerTypeVideo";
    }
    if (type == KestrionTriggerTypeWindow && !heron && !call.InstrumentInFamily("LarkB Series")) {
        return "KestrionTriggerTypeWindow";
    }
    if (type == KestrionTriggerTypeSerial && heron) {
        return "KestrionTriggerTypeSerial";
    }
    // No model is in both families; a model that came to be would be refused.
    if (type == KestrionTriggerTypeCommunication && heron &&
        call.InstrumentInFamily("HeronB Series")) {
        return "KestrionTriggerTypeCommunication";
    }
    return {};
}

// Selects a level, then the class within it.
HRESULT WriteClass(MemberCall& call, const char* level, KestrionTriggerTypeEnum type) {
    StepSequence steps(call);
    steps.Write("TRIGGER:A:TYPE %s", level);
    steps.Write("TRIGGER:A:%s:CLASS %{KestrionTriggerTypeEnum}s", level, type);
    return steps.Status();
}

}  // namespace

HRESULT get_Type(MemberCall& call, KestrionTriggerTypeEnum* val) {
    std::string token;
    StepSequence steps(call);
    steps.QueryText("TRIGGER:A:TYPE?", token);
    if (Trim(token) == "PULSE") {
        steps.QueryText("TRIGGER:A:PULSE:CLASS?", token);
    } else if (Trim(token) == "LOGIC") {
        steps.QueryText("TRIGGER:A:LOGIC:CLASS?", token);
    }
    if (!steps.Good()) {
        return steps.Status();
    }
    std::int32_t value = 0;
    const HRESULT status = call.Driver().TokenToEnum("KestrionTriggerTypeEnum", token, value);
    if (Succeeded(status)) {
        *val = static_cast<KestrionTriggerTypeEnum>(value);
    }
    return status;
}

HRESULT put_Type(MemberCall& call, KestrionTriggerTypeEnum val) {
    if (const auto refused = RefusedType(call, val); !refused.empty()) {
        return call.Errors().ReportValueNotSupported(refused, "Type");
    }
    switch (val) {
        case KestrionTriggerTypeEdge:
        case KestrionTriggerTypeCommunication:
        case KestrionTriggerTypeSerial:
        case KestrionTriggerTypeVideo:
        case KestrionTriggerTypeBus:
            return call.Write("TRIGGER:A:TYPE %{KestrionTriggerTypeEnum}s", val);
        case KestrionTriggerTypeWidth:
        case KestrionTriggerTypeRunt:
        case KestrionTriggerTypeGlitch:
        case KestrionTriggerTypeTimeout:
        case KestrionTriggerTypeTransition:
        case KestrionTriggerTypeWindow:
            return WriteClass(call, "PULSE", val);
        case KestrionTriggerTypeSetHold:
        case KestrionTriggerTypePattern:
        case KestrionTriggerTypeState:
            return WriteClass(call, "LOGIC", val);
        default:
            // The serial buses are chosen with the bus, not as a type of trigger.
            return call.Errors().ReportInvalidValue("Type", ValueText(val), {});
    }
}

}  // namespace kestrion::hooks::IKestrionTrigger
