// Picks the points of a long record that a plot needs.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace kestrion::cli {

// The lowest and the highest value of a part of a record.
struct Extremes {
    double low = 0;
    double high = 0;
};

// Indices in ascending order. A record of up to four points a column comes back whole; of a longer
// one each column gives its first, lowest, highest and last point, so that no peak is lost, however
// short. `columns` is 1 or more.
[[nodiscard]] std::vector<std::size_t> PointsToDraw(std::span<const double> values,
                                                    std::size_t columns);

// The extremes of each column. A record with fewer points than columns has as many columns as
// points.
[[nodiscard]] std::vector<Extremes> ColumnExtremes(std::span<const double> values,
                                                   std::size_t columns);

}  // namespace kestrion::cli
