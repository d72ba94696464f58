// The digital channels: a counter of 16 bits that counts 20,000 times a second, D0 its lowest bit,
// with levels of 0 V and 3.3 V. It is 0 at t = 0 of its own time.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "virtual/byte_source.h"
#include "virtual/curve.h"
#include "virtual/preamble.h"
#include "virtual/record.h"

namespace virtual_scope {

// All channels at a time of the counter's own, D0 in bit 0. A channel whose threshold is not
// between its levels is always high or always low.
[[nodiscard]] std::uint16_t DigitalWord(const DigitalThresholds& thresholds, double time);

// When the channel changes to high or to low, in seconds of the counter's own time.
[[nodiscard]] double DigitalEdge(int channel, bool rising);

// A definite length block with all channels of each point: in one byte D0 to D7, in two D0 to D15.
class DigitalCurve final : public ByteSource {
  public:
    DigitalCurve(const Record& record, const TransferFormat& format, const PointRange& range);
    std::size_t Read(std::span<std::byte> target) override;
    [[nodiscard]] bool AtEnd() const override { return headerLeft_.empty() && at_ == end_; }

  private:
    [[nodiscard]] std::byte ByteAt(std::int64_t place) const;

    DigitalThresholds thresholds_;
    TimeAxis axis_;
    TransferFormat format_;
    std::int64_t at_;  // the data byte to send next, counted from the record's beginning
    std::int64_t end_;
    std::string header_;
    std::string_view headerLeft_;
};

}  // namespace virtual_scope
