// Acquires channel 1 and prints its volts: example_read_waveform [RESOURCE]
//
// The call that acquires waits for the instrument's service request, which a raw socket can't
// carry. Over one, start the acquisition, ask until it has ended, and call FetchWaveform.
#include <kestrion/kestrion.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

// What the driver says of the member that failed last on this thread.
std::string DriverText() {
    kestrion::ComPtr<IErrorInfo> error;
    kestrion::BstrPtr text;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        (void)error->GetDescription(text.Out());
    }
    return text.Utf8();
}

void Check(HRESULT status) {
    if (kestrion::Failed(status)) {
        throw std::runtime_error(DriverText());
    }
}

void PrintChannel1(std::string_view resource) {
    kestrion::ComPtr<IKestrion> scope;
    Check(kestrion::CreateKestrion(scope.Out()));
    const kestrion::BstrPtr name{resource};
    Check(scope->Initialize(name.Get(), VARIANT_FALSE, VARIANT_FALSE, nullptr));

    kestrion::ComPtr<IKestrionHorizontal> horizontal;
    Check(scope->get_Horizontal(horizontal.Out()));
    Check(horizontal->put_RecordLength(1000));

    kestrion::ComPtr<IKestrionAcquisition> acquisition;
    Check(scope->get_Acquisition(acquisition.Out()));
    Check(acquisition->put_SingleSequence(VARIANT_TRUE));

    kestrion::ComPtr<IKestrionWaveformTransfer> transfer;
    Check(scope->get_WaveformTransfer(transfer.Out()));
    kestrion::SafeArrayPtr record;
    double time = 0;
    double interval = 0;
    constexpr LONG kLongestWait = 10000;  // milliseconds
    Check(transfer->ReadWaveform(KestrionSourceCh1, kLongestWait, record.Out(), &time, &interval));

    for (const double volts : record.Elements<double>()) {
        std::printf("%g s  %g V\n", time, volts);
        time += interval;
    }
    Check(scope->Close());
}

}  // namespace

int main(int argc, char** argv) {
    try {
        PrintChannel1(argc > 1 ? argv[1] : "VIRTUAL::PL7254C::INSTR");
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
