// The map that the waveform database and the dense acquisition keep of a channel: how often each
// place of the screen was hit.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "virtual/byte_source.h"
#include "virtual/models.h"
#include "virtual/preamble.h"
#include "virtual/record.h"

namespace virtual_scope {

struct MapSize {
    int columns;
    int rows;
};

// 500 by 200 for the older families, 1000 by 252 for the others.
[[nodiscard]] MapSize MapSizeOf(Family family);

// Hits in one column.
inline constexpr int kHitsOfColumn = 16;

// The counts, one column after the other, each from the bottom of the screen to its top. What lies
// beyond the screen is counted at its edge. A column of `kHitsOfColumn` hits is a part of the
// record's time.
[[nodiscard]] std::vector<std::int64_t> MakeMap(const Record& record, int channel, MapSize size);

// A definite length block of 8 bytes for each count.
class MapCurve final : public ByteSource {
  public:
    MapCurve(const std::vector<std::int64_t>& counts, ByteOrder order);
    std::size_t Read(std::span<std::byte> target) override;
    [[nodiscard]] bool AtEnd() const override { return at_ == block_.size(); }

  private:
    std::string block_;
    std::size_t at_ = 0;
};

}  // namespace virtual_scope
