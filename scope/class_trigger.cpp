// IIviScopeTrigger: the oscilloscope class's view of what triggers.
#include "core/member_call.h"
#include "generated/hooks/IIviScopeTrigger.h"
#include "kestrion/interfaces/IKestrionTrigger.h"

namespace kestrion::hooks::IIviScopeTrigger {
namespace {

constexpr std::string_view kImmediate = "IviScopeTriggerTypeImmediate";

}  // namespace

// The class has numbers of its own for transitions and video only; it knows no further types.
HRESULT get_Type(MemberCall& call, IviScopeTriggerTypeEnum* val) {
    auto type = KestrionTriggerTypeEdge;
    const HRESULT status = call.As<::IKestrionTrigger>().get_Type(&type);
    if (Failed(status)) {
        return status;
    }
    switch (type) {
        case KestrionTriggerTypeEdge:
        case KestrionTriggerTypeWidth:
        case KestrionTriggerTypeRunt:
        case KestrionTriggerTypeGlitch:
            *val = static_cast<IviScopeTriggerTypeEnum>(type);
            return status;
        case KestrionTriggerTypeTransition:
            *val = IviScopeTriggerACLine;
            return status;
        case KestrionTriggerTypeVideo:
            *val = IviScopeTriggerTV;
            return status;
        default:
            return call.Errors().ReportUnexpectedResponse({});
    }
}

HRESULT put_Type(MemberCall& call, IviScopeTriggerTypeEnum val) {
    if (val < IviScopeTriggerEdge) {
        return S_OK;
    }
    auto& trigger = call.As<::IKestrionTrigger>();
    switch (val) {
        case IviScopeTriggerEdge:
        case IviScopeTriggerWidth:
        case IviScopeTriggerRunt:
        case IviScopeTriggerGlitch:
            return trigger.put_Type(static_cast<KestrionTriggerTypeEnum>(val));
        case IviScopeTriggerTV:
            return trigger.put_Type(KestrionTriggerTypeVideo);
        case IviScopeTriggerACLine:
            return trigger.put_Type(KestrionTriggerTypeTransition);
        case IviScopeTriggerImmediate:
            return call.Errors().ReportValueNotSupported(kImmediate, "val");
        default:
            return call.Errors().ReportInvalidValue("val", ValueText(val), {});
    }
}

HRESULT Configure(MemberCall& call, IviScopeTriggerTypeEnum Type, double Holdoff) {
    switch (Type) {
        case IviScopeTriggerEdge:
            return call.Write("TRIGGER:A:TYPE EDGE;HOLDOFF:TIME %g;", Holdoff);
        case IviScopeTriggerWidth:
        case IviScopeTriggerRunt:
        case IviScopeTriggerGlitch:
            return call.Write(
                "TRIGGER:A:TYPE PULSE;PULSE:CLASS %{IviScopeTriggerTypeEnum}s;"
                ":TRIGGER:A:HOLDOFF:TIME %g;",
                Type, Holdoff);
        case IviScopeTriggerTV:
            return call.Write("TRIGGER:A:TYPE VIDEO;HOLDOFF:TIME %g;", Holdoff);
        case IviScopeTriggerImmediate:
            return call.Errors().ReportValueNotSupported(kImmediate, "Type");
        case IviScopeTriggerACLine:
            return call.Errors().ReportValueNotSupported("IviScopeTriggerACLine", "Type");
        default:
            return call.Errors().ReportInvalidValue("Type", ValueText(Type), {});
    }
}

// The instrument acquires after a while or waits; it doesn't look for a level by itself.
HRESULT get_Modifier(MemberCall& call, IviScopeTriggerModifierEnum* val) {
    auto mode = KestrionTriggerModeAuto;
    const HRESULT status = call.As<::IKestrionTrigger>().get_Mode(&mode);
    if (Succeeded(status)) {
        *val = mode == KestrionTriggerModeAuto ? IviScopeTriggerModifierAuto
                                               : IviScopeTriggerModifierNone;
    }
    return status;
}

HRESULT put_Modifier(MemberCall& call, IviScopeTriggerModifierEnum val) {
    auto& trigger = call.As<::IKestrionTrigger>();
    switch (val) {
        case IviScopeTriggerModifierNone:
            return trigger.put_Mode(KestrionTriggerModeNormal);
        case IviScopeTriggerModifierAuto:
            return trigger.put_Mode(KestrionTriggerModeAuto);
        case IviScopeTriggerModifierAutoLevel:
            return call.Errors().ReportValueNotSupported("IviScopeTriggerModifierAutoLevel", "val");
        default:
            return call.Errors().ReportInvalidValue("val", ValueText(val), {});
    }
}

}  // namespace kestrion::hooks::IIviScopeTrigger
