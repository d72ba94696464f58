#include "virtual/pixel_map.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "virtual/curve.h"
#include "virtual/signals.h"

namespace virtual_scope {
namespace {

constexpr double kScreenDivisions = 10;  // from the bottom to the top
constexpr int kCountBytes = 8;
// A point on the border of two rows belongs to the upper one; it may be off by less than this.
constexpr double kRowTolerance = 1e-9;

}  // namespace

MapSize MapSizeOf(Family family) {
    constexpr FamilySet kSmall = Families(Family::kHeron, Family::kHeronB, Family::kIbis,
                                          Family::kIbisB, Family::kLark, Family::kLarkB);
    return (kSmall & Families(family)) != 0 ? MapSize{500, 200} : MapSize{1000, 252};
}

std::vector<std::int64_t> MakeMap(const Record& record, int channel, MapSize size) {
    const ChannelSetup& setup = record.channels.at(static_cast<std::size_t>(channel));
    const std::int64_t points = std::int64_t{size.columns} * kHitsOfColumn;
    Record map = record;
    map.mode = AcquisitionMode::kSample;
    map.axis.zero = record.axis.At(0);
    map.axis.trigger = 0;
    map.axis.interval =
        record.axis.interval * static_cast<double>(record.length) / static_cast<double>(points);
    const SamplerPointer sampler = MakeChannelSampler(map, channel);
    std::vector<std::int64_t> counts(static_cast<std::size_t>(size.columns * size.rows));
    std::array<double, kBlockPoints> volts{};
    for (std::int64_t point = 0; point < points; ++point) {
        const auto within = static_cast<std::size_t>(point) % kBlockPoints;
        if (within == 0) {
            sampler->Sample(point, volts);
        }
        const double divisions = (volts[within] - setup.offset) / setup.scale + setup.position;
        const double row =
            std::floor((divisions / kScreenDivisions + 0.5) * size.rows + kRowTolerance);
        const double held = std::clamp(row, 0.0, static_cast<double>(size.rows - 1));
        const std::int64_t column = point / kHitsOfColumn;
        ++counts[static_cast<std::size_t>(column * size.rows) + static_cast<std::size_t>(held)];
    }
    return counts;
}

MapCurve::MapCurve(const std::vector<std::int64_t>& counts, ByteOrder order)
    : block_(BlockHeader(static_cast<std::int64_t>(counts.size()) * kCountBytes)) {
    for (const std::int64_t count : counts) {
        for (int i = 0; i < kCountBytes; ++i) {
            const int shift = 8 * (order == ByteOrder::kLsbFirst ? i : kCountBytes - 1 - i);
            block_ += static_cast<char>((static_cast<std::uint64_t>(count) >> shift) & 0xFFU);
        }
    }
}

std::size_t MapCurve::Read(std::span<std::byte> target) {
    const std::size_t count = std::min(target.size(), block_.size() - at_);
    std::memcpy(target.data(), block_.data() + at_, count);
    at_ += count;
    return count;
}

}  // namespace virtual_scope
