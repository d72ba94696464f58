// What a record looks like in a few numbers.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace kestrion::cli {

struct Statistics {
    std::size_t points = 0;
    // In the unit of the points. Zero for an empty record.
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    // Hertz; none with fewer than two rising crossings.
    std::optional<double> frequency;
};

// `xIncrement` is the time from one point to the next in seconds. Minimum, maximum and mean come
// from one pass over the points, the frequency from a second one.
//
// The frequency counts the rising crossings of the middle between minimum and maximum, their times
// interpolated between points. A crossing counts when the signal was a tenth of its height below
// the middle before and gets a tenth above it after, so that noise on an edge counts once.
[[nodiscard]] Statistics Describe(std::span<const double> values, double xIncrement);

}  // namespace kestrion::cli
