// IIviScopeAcquisition: the oscilloscope class's view of acquisition and time base.
#include <string>

#include "core/member_call.h"
#include "generated/hooks/IIviScopeAcquisition.h"
#include "kestrion/interfaces/IIviScopeAcquisition.h"
#include "kestrion/interfaces/IKestrionAcquisition.h"
#include "kestrion/interfaces/IKestrionHorizontal.h"
#include "platform/text.h"
#include "scope/step_sequence.h"

namespace kestrion::hooks::IIviScopeAcquisition {
namespace {

// The divisions across a record in the class's terms.
constexpr double kDivisions = 10.0;

// How the display fills in points.
constexpr const char* kSinX = "SINX";
constexpr const char* kLinear = "LINEAR";

}  // namespace

// The class has a name for the first five modes only.
HRESULT get_Type(MemberCall& call, IviScopeAcquisitionTypeEnum* val) {
    auto mode = KestrionAcquisitionModeSample;
    const HRESULT status = call.As<::IKestrionAcquisition>().get_Mode(&mode);
    if (Failed(status)) {
        return status;
    }
    if (mode < KestrionAcquisitionModeSample || mode > KestrionAcquisitionModeAverage) {
        return call.Errors().ReportUnexpectedResponse({});
    }
    *val = static_cast<IviScopeAcquisitionTypeEnum>(mode);
    return status;
}

HRESULT get_SampleMode(MemberCall& call, IviScopeSampleModeEnum* val) {
    auto mode = KestrionAcquisitionSamplingModeRT;
    const HRESULT status = call.As<::IKestrionAcquisition>().get_SamplingMode(&mode);
    if (Failed(status)) {
        return status;
    }
    if (mode == KestrionAcquisitionSamplingModeIT) {
        return call.Errors().ReportUnexpectedResponse({});
    }
    *val = static_cast<IviScopeSampleModeEnum>(mode);
    return status;
}

// The instrument fills in points on its display, in one of two ways; it can't leave them out.
HRESULT get_Interpolation(MemberCall& call, IviScopeInterpolationEnum* val) {
    std::string filter;
    if (const HRESULT status = call.QueryText("DISPLAY:FILTER?", filter); Failed(status)) {
        return status;
    }
    if (Trim(filter) == kSinX) {
        *val = IviScopeInterpolationSineX;
        return S_OK;
    }
    if (Trim(filter) == kLinear) {
        *val = IviScopeInterpolationLinear;
        return S_OK;
    }
    return call.Errors().ReportUnexpectedResponse({});
}

HRESULT put_Interpolation(MemberCall& call, IviScopeInterpolationEnum val) {
    if (val == IviScopeInterpolationSineX) {
        return call.Write("DISPLAY:FILTER %s", kSinX);
    }
    if (val == IviScopeInterpolationLinear) {
        return call.Write("DISPLAY:FILTER %s", kLinear);
    }
    return call.Errors().ReportValueNotSupported(ValueText(val), "val");
}

HRESULT get_StartTime(MemberCall& call, double* val) {
    double interval = 0.0;
    double zero = 0.0;
    double offset = 0.0;
    StepSequence steps(call);
    steps.QueryDouble("WFMOUTPRE:XINCR?", interval);
    steps.QueryDouble("WFMOUTPRE:XZERO?", zero);
    steps.QueryDouble("WFMOUTPRE:PT_OFF?", offset);
    if (steps.Good()) {
        *val = zero - offset * interval;
    }
    return steps.Status();
}

HRESULT get_TimePerRecord(MemberCall& call, double* val) {
    double scale = 0.0;
    const HRESULT status = call.QueryDouble("HORIZONTAL:SCALE?", scale);
    if (Succeeded(status)) {
        *val = scale * kDivisions;
    }
    return status;
}

HRESULT put_TimePerRecord(MemberCall& call, double val) {
    return call.Write("HORIZONTAL:SCALE %g", val / kDivisions);
}

HRESULT ConfigureRecord(MemberCall& call, double TimePerRecord, LONG MinNumPts,
                        double AcquisitionStartTime) {
    if (call.IsSimulating()) {
        return S_OK;
    }
    auto& acquisition = call.As<::IIviScopeAcquisition>();
    if (const HRESULT status = acquisition.put_TimePerRecord(TimePerRecord); Failed(status)) {
        return status;
    }
    const HRESULT status = call.As<::IKestrionHorizontal>().put_RecordLength(MinNumPts);
    return Failed(status) ? status : acquisition.put_StartTime(AcquisitionStartTime);
}

}  // namespace kestrion::hooks::IIviScopeAcquisition
