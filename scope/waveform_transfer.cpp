// IKestrionWaveformTransfer: waveforms from the instrument to arrays of volts.
#include "generated/hooks/IKestrionWaveformTransfer.h"

#include "scope/acquisition_wait.h"
#include "scope/waveform_transaction.h"

namespace kestrion::hooks::IKestrionWaveformTransfer {
namespace {

// The status of a member that a two-channel model refuses without a word.
constexpr HRESULT kSilentlyRefused = 1;

}  // namespace

HRESULT FetchWaveform(MemberCall& call, KestrionSourceEnum WaveformSource,
                      SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    WaveformTransaction transaction(call, WaveformSource);
    if (!transaction.ResolveSource() || !transaction.HideHeader() || !transaction.CheckSource() ||
        !transaction.CheckMode()) {
        return transaction.Status();
    }
    transaction.SetUp();
    if (!transaction.ReadHeader(true)) {
        return transaction.Status();
    }
    transaction.ReadPoints(WaveformArray, InitialX, XIncrement);
    transaction.Restore();
    return transaction.Status();
}

HRESULT ReadWaveform(MemberCall& call, KestrionSourceEnum WaveformSource, LONG MaxTimeMiliseconds,
                     SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    WaveformTransaction transaction(call, WaveformSource);
    if (!transaction.ResolveSource()) {
        return transaction.Status();
    }
    ServiceRequestWait wait(call);
    wait.Enable();
    if (!transaction.HideHeader()) {
        return transaction.Status();
    }
    if (transaction.SourceIsAbsent()) {
        transaction.RestoreHeader();
        return kSilentlyRefused;
    }
    if (!transaction.CheckSource() || !transaction.CheckMode()) {
        return transaction.Status();
    }
    if (wait.Acquire(MaxTimeMiliseconds) == AcquisitionOutcome::kTimedOut) {
        transaction.RestoreHeader();
        return call.Errors().ReportMaxTimeExceeded("Maximum Acquisition timeout exceeded.");
    }
    transaction.SetUp();
    if (!transaction.ReadHeader(false)) {
        return transaction.Status();
    }
    transaction.ReadPoints(WaveformArray, InitialX, XIncrement);
    wait.Disable();
    transaction.Restore();
    return transaction.Status();
}

}  // namespace kestrion::hooks::IKestrionWaveformTransfer
