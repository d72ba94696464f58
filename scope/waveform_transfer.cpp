// IKestrionWaveformTransfer: records of the instrument to arrays.
#include <cmath>

#include "generated/hooks/IKestrionWaveformTransfer.h"
#include "scope/acquisition_wait.h"
#include "scope/waveform_transaction.h"

namespace kestrion::hooks::IKestrionWaveformTransfer {
namespace {

using AcquisitionForm = AcquisitionOutcome (ServiceRequestWait::*)(LONG maxTime);

// Acquires, and then transfers the record. The service-request event is enabled before anything
// that can fail and stays enabled where the member ends early.
HRESULT AcquireAndTransfer(MemberCall& call, WaveformTransaction& transaction,
                           AcquisitionForm acquire, LONG maxTime, WaveformSink& sink,
                           double* initialX, double* xIncrement) {
    if (!transaction.Good()) {
        return transaction.Status();
    }
    ServiceRequestWait wait(call);
    wait.Enable();
    if (!transaction.Begin()) {
        return transaction.Status();
    }
    if ((wait.*acquire)(maxTime) == AcquisitionOutcome::kTimedOut) {
        (void)transaction.Access().EndWithReport([&call] {
            return call.Errors().ReportMaxTimeExceeded("Maximum Acquisition timeout exceeded.");
        });
        return transaction.Status();
    }
    if (transaction.Fetch(sink, initialX, xIncrement)) {
        wait.Disable();
        transaction.Restore();
    }
    return transaction.Status();
}

}  // namespace

HRESULT FetchWaveform(MemberCall& call, KestrionSourceEnum WaveformSource,
                      SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    VoltsSink sink(WaveformArray);
    return WaveformTransaction(call, {}, WaveformSource).Run(sink, InitialX, XIncrement);
}

HRESULT FetchWaveformDigitizedLevel(MemberCall& call, KestrionChannelEnum WaveformSource,
                                    SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement,
                                    double* YZero, double* YMult, double* YOffset) {
    const TransferPlan plan = {.absentSource = AbsentSource::kReported,
                               .points = IntegerPoints::kOneByteUnasked,
                               .countTest = CountTest::kNone};
    LevelsSink sink(WaveformArray, {.yZero = YZero, .yMult = YMult, .yOffset = YOffset});
    return WaveformTransaction(call, plan, WaveformSource, "KestrionChannelEnum")
        .Run(sink, InitialX, XIncrement);
}

HRESULT FetchWaveformMinMax(MemberCall& call, KestrionSourceEnum WaveformSource,
                            SAFEARRAY** MinWaveform, SAFEARRAY** MaxWaveform, double* InitialX,
                            double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kReported,
                               .modes = AcceptedModes::kPaired,
                               .lengthInOneLine = true};
    PairsSink sink(MinWaveform, MaxWaveform);
    return WaveformTransaction(call, plan, WaveformSource).Run(sink, InitialX, XIncrement);
}

HRESULT FetchWaveformStartStop(MemberCall& call, KestrionSourceEnum WaveformSource, LONG Start,
                               LONG Stop, SAFEARRAY** WaveformArray, double* InitialX,
                               double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kReported,
                               .window = RecordWindow::kGiven,
                               .start = Start,
                               .stop = Stop,
                               .countTest = CountTest::kGivenWindow};
    VoltsSink sink(WaveformArray);
    return WaveformTransaction(call, plan, WaveformSource).Run(sink, InitialX, XIncrement);
}

// The count is held against the whole record, so that a part of it is refused.
HRESULT FetchWaveformWithinCursor(MemberCall& call, KestrionSourceEnum WaveformSource,
                                  SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kSilent,
                               .window = RecordWindow::kCursor};
    VoltsSink sink(WaveformArray);
    return WaveformTransaction(call, plan, WaveformSource).Run(sink, InitialX, XIncrement);
}

// As within the cursor.
HRESULT FetchWaveformWithinZoom(MemberCall& call, KestrionSourceEnum WaveformSource,
                                SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kSilent,
                               .window = RecordWindow::kZoom};
    VoltsSink sink(WaveformArray);
    return WaveformTransaction(call, plan, WaveformSource).Run(sink, InitialX, XIncrement);
}

// The count is taken with the width from before two bytes are asked for.
HRESULT FetchWaveformHighResolution(MemberCall& call, KestrionSourceEnum WaveformSource,
                                    SAFEARRAY** WaveformArray, double* InitialX,
                                    double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kReported,
                               .points = IntegerPoints::kTwoBytes};
    VoltsSink sink(WaveformArray);
    return WaveformTransaction(call, plan, WaveformSource).Run(sink, InitialX, XIncrement);
}

HRESULT ReadWaveform(MemberCall& call, KestrionSourceEnum WaveformSource, LONG MaxTimeMiliseconds,
                     SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kSilent,
                               .countTest = CountTest::kNone};
    VoltsSink sink(WaveformArray);
    WaveformTransaction transaction(call, plan, WaveformSource);
    return AcquireAndTransfer(call, transaction, &ServiceRequestWait::Acquire, MaxTimeMiliseconds,
                              sink, InitialX, XIncrement);
}

HRESULT ReadWaveformMinMax(MemberCall& call, KestrionSourceEnum WaveformSource,
                           LONG MaxTimeMiliseconds, SAFEARRAY** MinWaveform,
                           SAFEARRAY** MaxWaveform, double* InitialX, double* XIncrement) {
    const TransferPlan plan = {.absentSource = AbsentSource::kSilent,
                               .modes = AcceptedModes::kPaired,
                               .countTest = CountTest::kNone};
    PairsSink sink(MinWaveform, MaxWaveform);
    WaveformTransaction transaction(call, plan, WaveformSource);
    return AcquireAndTransfer(call, transaction, &ServiceRequestWait::AcquireByPolling,
                              MaxTimeMiliseconds, sink, InitialX, XIncrement);
}

// False for a NaN: the answer is the other way round than the name says, and callers know it so.
HRESULT IsWaveformElementInvalid(MemberCall&, double Element, VARIANT_BOOL* Val) {
    *Val = ToVariantBool(!std::isnan(Element));
    return S_OK;
}

}  // namespace kestrion::hooks::IKestrionWaveformTransfer
