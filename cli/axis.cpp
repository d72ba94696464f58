#include "cli/axis.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace kestrion::cli {
namespace {

constexpr double kMargin = 0.08;
// Differences this small beside the values themselves are rounding errors, not a signal.
constexpr double kRelativeNoise = 1e-12;
// A tick this close behind the end of the range, in steps, still counts as inside.
constexpr double kTickTolerance = 1e-9;
constexpr int kMostDecimals = 15;

// The smallest of 1, 2, 5 and 10 times a power of ten that isn't below `least`.
double NiceStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least * (1 - kTickTolerance)) {
            return factor * power;
        }
    }
    return 10 * power;
}

int DecimalsFor(double step) {
    const double digits = -std::floor(std::log10(step) + kTickTolerance);
    return std::clamp(static_cast<int>(digits), 0, kMostDecimals);
}

}  // namespace

Range WithMargin(Range data) {
    const double magnitude = std::max(std::abs(data.low), std::abs(data.high));
    if (data.Span() > magnitude * kRelativeNoise) {
        return {data.low - kMargin * data.Span(), data.high + kMargin * data.Span()};
    }
    const double margin = magnitude > 0 ? magnitude / 2 : 1;
    return {data.low - margin, data.high + margin};
}

Axis::Axis(Range range, int ticks)
    : range_(range),
      step_(NiceStep(range.Span() / ticks)),
      prefix_(PrefixFor(std::max(std::abs(range.low), std::abs(range.high)))),
      decimals_(DecimalsFor(step_ / prefix_.Scale())) {
    const double first = std::ceil(range.low / step_ - kTickTolerance);
    const double last = std::floor(range.high / step_ + kTickTolerance);
    for (double i = first; i <= last; ++i) {
        ticks_.push_back(i * step_);
    }
}

std::string Axis::Label(double tick) const {
    // Anything under a thousandth of a step is a zero with a rounding error.
    const double value = std::abs(tick) < step_ / 1000 ? 0 : tick / prefix_.Scale();
    return fmt::format("{:.{}f}", value, decimals_);
}

}  // namespace kestrion::cli
