#include "scope/transfer_state.h"

#include "kestrion/platform/error_info.h"

namespace kestrion {

void TransferState::Save(MemberCall& call, StepSequence& steps) {
    (void)call.QueryText("DATA:SOURCE?", source_);
    (void)call.QueryText("DATA:START?", start_);
    (void)call.QueryText("DATA:STOP?", stop_);
    (void)call.QueryText("WFMOUTPRE:BN_FMT?", format_);
    (void)call.QueryText("WFMOUTPRE:BYT_OR?", byteOrder_);
    (void)call.QueryText("WFMOUTPRE:ENCD?", encoding_);
    (void)call.QueryText("WFMOUTPRE:BYT_NR?", width_);
    std::string running;
    steps.SetStatus(call.QueryText("ACQUIRE:STATE?", running));
}

void TransferState::Restore(StepSequence& steps) const {
    steps.Write("DATA:SOURCE %$Cs;START %$Cs;STOP %$Cs", &source_, &start_, &stop_);
    steps.Write("WFMOUTPRE:BN_FMT %$Cs;BYT_OR %$Cs;ENCD %$Cs;BYT_NR %$Cs", &format_, &byteOrder_,
                &encoding_, &width_);
}

void QueryInitialX(MemberCall& call, double xZero, double xIncrement, double* initialX) {
    LONG offset = 0;
    if (Failed(call.QueryLong("WFMOUTPRE:PT_OFF?", offset))) {
        (void)SetErrorInfo(0, nullptr);
        return;
    }
    *initialX = xZero - offset * xIncrement;
}

}  // namespace kestrion
