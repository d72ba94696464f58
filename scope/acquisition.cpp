// IKestrionAcquisition: what acquisition control does beyond its templates.
#include "generated/hooks/IKestrionAcquisition.h"

#include "core/member_call.h"
#include "kestrion/interfaces/IKestrionAcquisition.h"

namespace kestrion::hooks::IKestrionAcquisition {

// Waveform database mode does not exist on this family.
HRESULT put_Mode(MemberCall& call, KestrionAcquisitionModeEnum val) {
    if (val == KestrionAcquisitionModeWfmDB && call.InstrumentInFamily("HeronB Series")) {
        return call.Errors().ReportDetail(message::kWaveformDatabaseRefused, "InstrSet", {"Val"});
    }
    return call.SendCommand();
}

HRESULT SetWfmDBMode(MemberCall& call, LONG NumberSamples) {
    auto& acquisition = call.As<::IKestrionAcquisition>();
    const HRESULT status = acquisition.put_Mode(KestrionAcquisitionModeWfmDB);
    return Failed(status) ? status : acquisition.put_NumberSamples(NumberSamples);
}

}  // namespace kestrion::hooks::IKestrionAcquisition
