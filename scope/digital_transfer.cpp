#include "scope/digital_transfer.h"

#include <algorithm>

#include "kestrion/platform/error_info.h"
#include "platform/storage.h"

namespace kestrion {

HRESULT DigitalTransfer::Run(SAFEARRAY** packed, double* initialX, double* xIncrement) {
    steps_.QueryText("HEADER?", header_);
    steps_.Write("HEADER OFF");
    const bool on = AnyChannelIsOn();
    if (!steps_.Good()) {
        return steps_.Status();
    }
    if (!on) {
        // The header stays off here.
        return call_.Errors().ReportChannelNotEnabled("DigitalChannel Not Enabled error");
    }
    SetUp();
    curve_.Lock();
    curve_.ReadHeader();
    ReadRecord(packed, initialX, xIncrement);
    state_.Restore(steps_);
    steps_.Write("HEADER %$Cs", &header_);
    return steps_.Status();
}

bool DigitalTransfer::AnyChannelIsOn() {
    bool on = false;
    for (int channel = 0; channel < kDigitalChannelCount; ++channel) {
        LONG selected = 0;
        steps_.QueryLong("SELECT:D" + std::to_string(channel) + "?", selected);
        on = on || selected == 1;
    }
    return on;
}

void DigitalTransfer::SetUp() {
    LONG points = 0;
    state_.Save(call_, steps_);
    steps_.Write("DATA:SOURCE DIGITALALL");
    steps_.QueryLong("HORIZONTAL:RECORDLENGTH?", points);
    steps_.Write("DATA:START 1;STOP %d", points);
    steps_.QueryLong("WFMOUTPRE:BYT_NR?", elementWidth_);
    steps_.Write("WFMOUTPRE:ENCDG BIN;BN_FMT FP");
    steps_.Write(":WFMOUTPRE:BYT_OR LSB");
}

void DigitalTransfer::ReadRecord(SAFEARRAY** packed, double* initialX, double* xIncrement) {
    const std::uint64_t elements =
        elementWidth_ > 0 ? curve_.Length() / static_cast<std::uint64_t>(elementWidth_) : 0;
    if (!steps_.Good() || !curve_.Allocate()) {
        return;
    }
    SafeArrayPtr array(CreateVectorToFill(VT_I4, static_cast<ULONG>(elements)));
    if (!array) {
        return;
    }
    double xZero = 0.0;
    if (curve_.ReadData()) {
        StepSequence preamble(call_);
        preamble.QueryDouble("WFMOUTPRE:XINCR?", *xIncrement);
        preamble.QueryDouble("WFMOUTPRE:XZERO?", xZero);
        if (!preamble.Good()) {
            (void)SetErrorInfo(0, nullptr);
        }
    }
    curve_.Unlock();
    if (!steps_.Good()) {
        return;
    }
    // An element is one byte, side by side, whatever width the instrument says.
    std::ranges::copy(curve_.Bytes().first(elements), array.Elements<LONG>().begin());
    *packed = array.Detach();
    QueryInitialX(call_, xZero, *xIncrement, initialX);
}

}  // namespace kestrion
