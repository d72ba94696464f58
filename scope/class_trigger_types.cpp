// The trigger types of the oscilloscope class: what the instrument has nothing for is refused.
#include "core/member_call.h"
#include "generated/hooks/IIviScopeTriggerAcLine.h"
#include "generated/hooks/IIviScopeTriggerTv.h"
#include "generated/hooks/IIviScopeTriggerWidth.h"
#include "kestrion/interfaces/IKestrionTriggerWidth.h"

namespace kestrion::hooks {

namespace IIviScopeTriggerAcLine {

HRESULT get_Slope(MemberCall& call, IviScopeACLineSlopeEnum*) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT put_Slope(MemberCall& call, IviScopeACLineSlopeEnum) {
    return call.Errors().ReportPropertyNotSupported();
}

}  // namespace IIviScopeTriggerAcLine

namespace IIviScopeTriggerTv {

HRESULT Configure(MemberCall& call, BSTR, IviScopeTVSignalFormatEnum, IviScopeTVTriggerEventEnum,
                  IviScopeTVTriggerPolarityEnum) {
    return call.SendCommand();
}

HRESULT get_Event(MemberCall& call, IviScopeTVTriggerEventEnum*) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT put_Event(MemberCall& call, IviScopeTVTriggerEventEnum) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT get_LineNumber(MemberCall& call, LONG*) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT put_LineNumber(MemberCall& call, LONG) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT get_Polarity(MemberCall& call, IviScopeTVTriggerPolarityEnum*) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT put_Polarity(MemberCall& call, IviScopeTVTriggerPolarityEnum) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT get_SignalFormat(MemberCall& call, IviScopeTVSignalFormatEnum*) {
    return call.Errors().ReportPropertyNotSupported();
}

HRESULT put_SignalFormat(MemberCall& call, IviScopeTVSignalFormatEnum) {
    return call.Errors().ReportPropertyNotSupported();
}

}  // namespace IIviScopeTriggerTv

namespace IIviScopeTriggerWidth {
namespace {

constexpr std::string_view kEither = "IviScopeWidthPolarityEither";

}  // namespace

HRESULT Configure(MemberCall& call, BSTR, double, double, double,
                  IviScopeWidthPolarityEnum Polarity, IviScopeWidthConditionEnum) {
    if (Polarity == IviScopeWidthPolarityEither) {
        return call.Errors().ReportValueNotSupported(kEither, "Polarity");
    }
    return call.SendCommand();
}

HRESULT put_Polarity(MemberCall& call, IviScopeWidthPolarityEnum val) {
    if (val == IviScopeWidthPolarityEither) {
        return call.Errors().ReportValueNotSupported(kEither, "val");
    }
    return call.As<::IKestrionTriggerWidth>().put_Polarity(
        static_cast<KestrionTriggerWidthPolarityEnum>(val));
}

}  // namespace IIviScopeTriggerWidth

}  // namespace kestrion::hooks
