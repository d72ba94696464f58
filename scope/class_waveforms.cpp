// IIviScopeMeasurement: the class's view of a channel's waveforms.
#include <initializer_list>

#include "core/member_call.h"
#include "generated/hooks/IIviScopeMeasurement.h"
#include "kestrion/interfaces/IKestrionWaveformTransfer.h"

namespace kestrion::hooks::IIviScopeMeasurement {
namespace {

::IKestrionWaveformTransfer& Transfer(MemberCall& call) {
    return *call.Driver().Face<::IKestrionWaveformTransfer>();
}

KestrionSourceEnum SourceOf(MemberCall& call) {
    return static_cast<KestrionSourceEnum>(call.Node().Index());
}

// What simulation gives: zeros, in arrays that take the place of the caller's.
HRESULT GiveZeros(MemberCall& call, std::initializer_list<SAFEARRAY**> waveforms, double* initialX,
                  double* xIncrement) {
    constexpr ULONG kSimulatedPoints = 500;
    for (SAFEARRAY** waveform : waveforms) {
        if (const HRESULT status = SafeArrayDestroy(*waveform); Failed(status)) {
            return status;
        }
        *waveform = SafeArrayCreateVector(VT_R8, 0, kSimulatedPoints);
        if (*waveform == nullptr) {
            return call.Errors().ReportOutOfMemory({});
        }
    }
    *initialX = 0.0;
    *xIncrement = 0.0;
    return S_OK;
}

}  // namespace

HRESULT FetchWaveform(MemberCall& call, SAFEARRAY** WaveformArray, double* InitialX,
                      double* XIncrement) {
    return call.IsSimulating()
               ? GiveZeros(call, {WaveformArray}, InitialX, XIncrement)
               : Transfer(call).FetchWaveform(SourceOf(call), WaveformArray, InitialX, XIncrement);
}

HRESULT ReadWaveform(MemberCall& call, LONG MaxTimeMilliseconds, SAFEARRAY** WaveformArray,
                     double* InitialX, double* XIncrement) {
    return call.IsSimulating() ? GiveZeros(call, {WaveformArray}, InitialX, XIncrement)
                               : Transfer(call).ReadWaveform(SourceOf(call), MaxTimeMilliseconds,
                                                             WaveformArray, InitialX, XIncrement);
}

HRESULT FetchWaveformMinMax(MemberCall& call, SAFEARRAY** MinWaveform, SAFEARRAY** MaxWaveform,
                            double* InitialX, double* XIncrement) {
    return call.IsSimulating()
               ? GiveZeros(call, {MinWaveform, MaxWaveform}, InitialX, XIncrement)
               : Transfer(call).FetchWaveformMinMax(SourceOf(call), MinWaveform, MaxWaveform,
                                                    InitialX, XIncrement);
}

HRESULT ReadWaveformMinMax(MemberCall& call, LONG MaxTimeMilliseconds, SAFEARRAY** MinWaveform,
                           SAFEARRAY** MaxWaveform, double* InitialX, double* XIncrement) {
    return call.IsSimulating()
               ? GiveZeros(call, {MinWaveform, MaxWaveform}, InitialX, XIncrement)
               : Transfer(call).ReadWaveformMinMax(SourceOf(call), MaxTimeMilliseconds, MinWaveform,
                                                   MaxWaveform, InitialX, XIncrement);
}

}  // namespace kestrion::hooks::IIviScopeMeasurement
