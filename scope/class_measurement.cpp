// IIviScopeMeasurements and IIviScopeMeasurement: the oscilloscope class's view of acquisitions,
// and measurements of a channel.
#include <chrono>

#include "core/member_call.h"
#include "generated/hooks/IIviScopeMeasurement.h"
#include "generated/hooks/IIviScopeMeasurements.h"
#include "kestrion/interfaces/IKestrionAcquisition.h"
#include "kestrion/interfaces/IKestrionMeasurementImmediate.h"
#include "kestrion/interfaces/IKestrionWaveformTransfer.h"
#include "scope/acquisition_wait.h"

namespace kestrion::hooks {

namespace IIviScopeMeasurements {
namespace {

// What simulation has nothing to do with: it has no instrument to tell.
HRESULT Control(MemberCall& call, HRESULT (STDMETHODCALLTYPE ::IKestrionAcquisition::*member)()) {
    return call.IsSimulating() ? S_OK : (call.As<::IKestrionAcquisition>().*member)();
}

}  // namespace

HRESULT Abort(MemberCall& call) {
    return Control(call, &::IKestrionAcquisition::Stop);
}

HRESULT AutoSetup(MemberCall& call) {
    return Control(call, &::IKestrionAcquisition::AutoSet);
}

HRESULT Initiate(MemberCall& call) {
    return Control(call, &::IKestrionAcquisition::Start);
}

HRESULT IsWaveformElementInvalid(MemberCall& call, double Element, VARIANT_BOOL* IsInvalid) {
    return call.As<::IKestrionWaveformTransfer>().IsWaveformElementInvalid(Element, IsInvalid);
}

HRESULT Status(MemberCall& call, IviScopeAcquisitionStatusEnum* Status) {
    if (call.IsSimulating()) {
        *Status = IviScopeAcquisitionStatusComplete;
        return S_OK;
    }
    auto& acquisition = call.As<::IKestrionAcquisition>();
    VARIANT_BOOL running = VARIANT_FALSE;
    if (const HRESULT status = acquisition.get_State(&running); Failed(status)) {
        return status;
    }
    if (running != VARIANT_FALSE) {
        *Status = IviScopeAcquisitionStatusInProgress;
        return S_OK;
    }
    LONG acquired = 0;
    const HRESULT status = acquisition.get_NumberAcquisitions(&acquired);
    if (Succeeded(status)) {
        *Status =
            acquired > 0 ? IviScopeAcquisitionStatusComplete : IviScopeAcquisitionStatusUnknown;
    }
    return status;
}

}  // namespace IIviScopeMeasurements

namespace IIviScopeMeasurement {
namespace {

// Only a failure of the wait is a time-out here, and a running acquisition gets some time to show
// what was set up last.
constexpr WaitRules kMeasurementRules{.warningsAreTimeouts = false,
                                      .pauseWhileRunning = std::chrono::seconds(3)};

// The numbers of the class's measurements are those of the instrument's, so they pass unchanged.
HRESULT Measure(MemberCall& call, IviScopeMeasurementEnum function, double* measurement) {
    auto& immediate = *call.Driver().Face<::IKestrionMeasurementImmediate>();
    HRESULT status = immediate.put_Source1(static_cast<KestrionSourceEnum>(call.Node().Index()));
    if (Succeeded(status)) {
        status = immediate.put_Type(static_cast<KestrionMeasurementTypeEnum>(function));
    }
    return Succeeded(status) ? immediate.get_Value(measurement) : status;
}

}  // namespace

HRESULT FetchWaveformMeasurement(MemberCall& call, IviScopeMeasurementEnum MeasFunction,
                                 double* Measurement) {
    return call.IsSimulating() ? S_OK : Measure(call, MeasFunction, Measurement);
}

HRESULT ReadWaveformMeasurement(MemberCall& call, IviScopeMeasurementEnum MeasFunction,
                                LONG MaxTimeMilliseconds, double* Measurement) {
    if (call.IsSimulating()) {
        return S_OK;
    }
    // The event stays enabled behind this member.
    ServiceRequestWait wait(call, kMeasurementRules);
    wait.Enable();
    if (wait.Acquire(MaxTimeMilliseconds) == AcquisitionOutcome::kTimedOut) {
        return call.Errors().ReportMaxTimeExceeded("Maximum Acquisition timeout exceeded.");
    }
    return Measure(call, MeasFunction, Measurement);
}

}  // namespace IIviScopeMeasurement
}  // namespace kestrion::hooks
