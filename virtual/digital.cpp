#include "virtual/digital.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace virtual_scope {
namespace {

constexpr double kCountRate = 20e3;
constexpr double kLogicHigh = 3.3;
// Products that give the place of a count are off by less than this; a point on it belongs to it.
constexpr double kCountTolerance = 1e-7;

}  // namespace

std::uint16_t DigitalWord(const DigitalThresholds& thresholds, double time) {
    const auto count = static_cast<std::int64_t>(std::floor(time * kCountRate + kCountTolerance));
    auto word = static_cast<std::uint16_t>(count & 0xFFFF);
    for (std::size_t channel = 0; channel < thresholds.size(); ++channel) {
        const auto bit = static_cast<std::uint16_t>(1U << channel);
        if (thresholds[channel] < 0) {
            word = static_cast<std::uint16_t>(word | bit);
        } else if (thresholds[channel] >= kLogicHigh) {
            word = static_cast<std::uint16_t>(word & ~bit);
        }
    }
    return word;
}

double DigitalEdge(int channel, bool rising) {
    return rising ? std::exp2(channel) / kCountRate : 0.0;
}

DigitalCurve::DigitalCurve(const Record& record, const TransferFormat& format,
                           const PointRange& range)
    : thresholds_(record.thresholds),
      axis_(record.axis),
      format_(format),
      at_(range.first * format.width),
      end_((range.first + range.count) * format.width),
      header_(BlockHeader(end_ - at_)),
      headerLeft_(header_) {
    axis_.zero += record.shift;
}

std::size_t DigitalCurve::Read(std::span<std::byte> target) {
    std::size_t done = std::min(headerLeft_.size(), target.size());
    std::memcpy(target.data(), headerLeft_.data(), done);
    headerLeft_.remove_prefix(done);
    for (; done < target.size() && at_ < end_; ++done, ++at_) {
        target[done] = ByteAt(at_);
    }
    return done;
}

std::byte DigitalCurve::ByteAt(std::int64_t place) const {
    const unsigned word = DigitalWord(thresholds_, axis_.At(place / format_.width));
    if (format_.width == 1) {
        return static_cast<std::byte>(word & 0xFFU);
    }
    const bool highByte = (place % 2 == 0) == (format_.order == ByteOrder::kMsbFirst);
    return static_cast<std::byte>(highByte ? word >> 8 : word & 0xFFU);
}

}  // namespace virtual_scope
