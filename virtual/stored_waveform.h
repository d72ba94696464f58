// The waveform in a reference memory.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "virtual/sampler.h"
#include "virtual/time_axis.h"

namespace virtual_scope {

struct Record;
struct ChannelSetup;

struct StoredWaveform {
    TimeAxis axis;
    std::vector<double> volts;
    bool floats = false;  // it has no levels, as a math waveform
    double scale = 0.5;   // as in `ChannelSetup`
    double position = 0;
    double offset = 0;
};

using StoredPointer = std::shared_ptr<const StoredWaveform>;

// What is in the reference memories until something is stored there: a thousand points of a sine
// of 1 kHz and 1 V, 4 us apart.
[[nodiscard]] StoredPointer InitialReference();

// A stored waveform on the time axis of another: each point is the one that is next in time, and
// 0 V before and after the stored points.
class StoredSampler final : public Sampler {
  public:
    StoredSampler(const TimeAxis& axis, StoredPointer waveform)
        : axis_(axis), waveform_(std::move(waveform)) {}
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    TimeAxis axis_;
    StoredPointer waveform_;
};

}  // namespace virtual_scope
