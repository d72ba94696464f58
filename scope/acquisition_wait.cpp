#include "scope/acquisition_wait.h"

#include <chrono>

#include "io/visa_numbers.h"
#include "kestrion/interfaces/IKestrionAcquisition.h"
#include "kestrion/platform/error_info.h"
#include "scope/step_sequence.h"

namespace kestrion {

ServiceRequestWait::ServiceRequestWait(MemberCall& call, const WaitRules& rules)
    : call_(call), rules_(rules) {}

void ServiceRequestWait::Enable() {
    auto& session = call_.Session();
    (void)session.GetFunctions().viEnableEvent(
        session.GetInstrumentSession(), visa::kEventServiceRequest, visa::kMechanismQueue, 0);
}

void ServiceRequestWait::Disable() {
    auto& session = call_.Session();
    (void)session.GetFunctions().viDisableEvent(session.GetInstrumentSession(),
                                                visa::kEventServiceRequest, visa::kMechanismQueue);
}

bool ServiceRequestWait::IsSingleSequence() {
    VARIANT_BOOL single = VARIANT_FALSE;
    // The root's: the member may be a channel's.
    auto& acquisition = *call_.Driver().Face<IKestrionAcquisition>();
    if (Failed(acquisition.get_SingleSequence(&single))) {
        // Nothing is started; what the instrument has is transferred.
        (void)SetErrorInfo(0, nullptr);
        return false;
    }
    if (single == VARIANT_FALSE) {
        (void)call_.Write("ACQUIRE:STATE 1");
        if (rules_.pauseWhileRunning.count() > 0) {
            call_.Driver().SystemTime().Sleep(rules_.pauseWhileRunning);
        }
    }
    return single != VARIANT_FALSE;
}

AcquisitionOutcome ServiceRequestWait::Acquire(LONG maxTime) {
    if (!IsSingleSequence()) {
        return AcquisitionOutcome::kReady;
    }
    StepSequence start(call_);
    start.Write("ACQUIRE:REPET 0;STATE 0");
    start.Write("DESE 1;*ESE 1;*SRE 32;*CLS");
    start.Write("ACQUIRE:STATE 1");
    start.Write("*OPC");
    // A start that failed ends here too: by time-out.
    return WaitForRequest(maxTime) ? AcquisitionOutcome::kReady : AcquisitionOutcome::kTimedOut;
}

AcquisitionOutcome ServiceRequestWait::AcquireByPolling(LONG maxTime) {
    if (!IsSingleSequence()) {
        return AcquisitionOutcome::kReady;
    }
    StepSequence start(call_);
    start.Write(":ACQUIRE:REPET 0;STATE 0");
    start.Write("DESE 1;*ESE 1;*SRE 32");
    start.Write("*CLS");
    const std::uint32_t begin = call_.Driver().SystemTime().TickCount();
    start.Write(":ACQUIRE:STATE 1;*OPC");
    return PollUntil(begin + static_cast<std::uint32_t>(maxTime)) ? AcquisitionOutcome::kReady
                                                                  : AcquisitionOutcome::kTimedOut;
}

bool ServiceRequestWait::PollUntil(std::uint32_t end) {
    constexpr visa::ViUInt16 kComplete = 1;
    auto& session = call_.Session();
    Clock& clock = call_.Driver().SystemTime();
    visa::ViUInt16 status = 0;
    do {
        clock.Sleep(std::chrono::milliseconds(100));
        (void)session.GetFunctions().viReadSTB(session.GetInstrumentSession(), &status);
    } while (status != kComplete && clock.TickCount() < end);
    return status == kComplete;
}

bool ServiceRequestWait::WaitForRequest(LONG maxTime) {
    auto& session = call_.Session();
    const visa::FunctionTable& functions = session.GetFunctions();
    const visa::ViSession instrument = session.GetInstrumentSession();
    visa::ViEventType type = 0;
    visa::ViEvent context = 0;
    const visa::ViStatus status =
        functions.viWaitOnEvent(instrument, visa::kEventServiceRequest,
                                static_cast<visa::ViUInt32>(maxTime), &type, &context);
    if (status < 0 || (rules_.warningsAreTimeouts && status != 0)) {
        return false;
    }
    (void)functions.viClose(context);
    // The poll clears the request; the byte says nothing new.
    visa::ViUInt16 statusByte = 0;
    (void)functions.viReadSTB(instrument, &statusByte);
    return true;
}

}  // namespace kestrion
