// FetchWaveform over the driver, for the measurements of its time and of its memory.
#pragma once

#include <vector>

#include "bench/driver_client.h"
#include "bench/server.h"

namespace bench {

class FetchDriver {
  public:
    FetchDriver(std::string_view resource, std::size_t points) : client_(resource) {
        Check(client_.As<IKestrionHorizontal>()->put_RecordLength(static_cast<LONG>(points)));
        transfer_ = client_.As<IKestrionWaveformTransfer>();
    }
    // The caller owns the array.
    [[nodiscard]] kestrion::SafeArrayPtr Fetch() {
        kestrion::SafeArrayPtr volts;
        double initialX = 0.0;
        double xIncrement = 0.0;
        Check(transfer_->FetchWaveform(KestrionSourceCh1, volts.Out(), &initialX, &xIncrement));
        return volts;
    }

  private:
    DriverClient client_;
    kestrion::ComPtr<IKestrionWaveformTransfer> transfer_;
};

// What the driver exchanges with the instrument in one fetch.
inline std::vector<Exchange> RecordFetch() {
    constexpr std::size_t kPoints = 1000;
    auto exchanges = RecordExchanges(
        [](const std::string& resource) { (void)FetchDriver(resource, kPoints).Fetch(); },
        "HORIZONTAL:RECORDLENGTH 1000");
    return exchanges;
}

}  // namespace bench
