#include "virtual/stored_waveform.h"

#include <algorithm>
#include <cmath>

namespace virtual_scope {

StoredPointer InitialReference() {
    constexpr std::size_t kPoints = 1000;
    auto waveform = std::make_shared<StoredWaveform>();
    waveform->axis = {.zero = 0, .trigger = kPoints / 2, .interval = 4e-6};
    waveform->volts.resize(kPoints);
    const SineSampler sine(waveform->axis, 1e3, 1.0);
    for (std::size_t first = 0; first < kPoints; first += kBlockPoints) {
        sine.Sample(
            static_cast<std::int64_t>(first),
            std::span(waveform->volts).subspan(first, std::min(kBlockPoints, kPoints - first)));
    }
    return waveform;
}

void StoredSampler::Sample(std::int64_t first, std::span<double> volts) const {
    const TimeAxis& stored = waveform_->axis;
    for (std::size_t i = 0; i < volts.size(); ++i) {
        const double time = axis_.At(first + static_cast<std::int64_t>(i));
        const double place = std::round((time - stored.zero) / stored.interval) +
                             static_cast<double>(stored.trigger);
        const bool inside = place >= 0 && place < static_cast<double>(waveform_->volts.size());
        volts[i] = inside ? waveform_->volts[static_cast<std::size_t>(place)] : 0.0;
    }
}

}  // namespace virtual_scope
