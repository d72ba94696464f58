// A plot's axis: its range, its ticks and how they are written.
#pragma once

#include <string>
#include <vector>

#include "cli/si_format.h"

namespace kestrion::cli {

struct Range {
    double low = 0;
    double high = 0;

    [[nodiscard]] double Span() const { return high - low; }
    [[nodiscard]] bool Contains(double value) const { return value >= low && value <= high; }
};

// A range to draw `data` in: a margin of 8 % above and below; around a constant, a range that
// shows it as a line in the middle.
[[nodiscard]] Range WithMargin(Range data);

// Ticks at multiples of 1, 2 or 5 times a power of ten.
class Axis {
  public:
    // At most `ticks` + 1 of them, in ascending order and inside of the range. `ticks` is 1 or
    // more, and the range's span is above zero.
    Axis(Range range, int ticks);

    [[nodiscard]] const Range& Extent() const { return range_; }
    [[nodiscard]] const std::vector<double>& Ticks() const { return ticks_; }
    [[nodiscard]] double Step() const { return step_; }
    // The prefix of the unit that the labels are in: "m" for "Time (ms)".
    [[nodiscard]] std::string_view PrefixSymbol() const { return prefix_.symbol; }
    // The tick in that unit, with the decimals that the step needs.
    [[nodiscard]] std::string Label(double tick) const;
    // Where `value` stands: 0 at the low end, 1 at the high end.
    [[nodiscard]] double Position(double value) const {
        return (value - range_.low) / range_.Span();
    }

  private:
    Range range_;
    double step_;
    SiPrefix prefix_;
    int decimals_;
    std::vector<double> ticks_;
};

}  // namespace kestrion::cli
