#include "cli/plot_ranges.h"

#include <algorithm>
#include <optional>

namespace kestrion::cli {
namespace {

std::optional<Range> Joined(const std::optional<Range>& a, const Range& b) {
    return a ? Range{std::min(a->low, b.low), std::max(a->high, b.high)} : b;
}

}  // namespace

Range TimeRange(const Waveforms& waveforms) {
    std::optional<Range> range;
    for (const Waveform& waveform : waveforms) {
        if (!waveform.volts.empty()) {
            range = Joined(range, {waveform.TimeAt(0), waveform.TimeAt(waveform.volts.size() - 1)});
        }
    }
    const Range times = range.value_or(Range{});
    return times.Span() > 0 ? times : WithMargin(times);
}

Range VoltageRange(const Waveforms& waveforms) {
    std::optional<Range> range;
    for (const Waveform& waveform : waveforms) {
        if (!waveform.volts.empty()) {
            const auto [low, high] =
                std::minmax_element(waveform.volts.begin(), waveform.volts.end());
            range = Joined(range, {*low, *high});
        }
    }
    return WithMargin(range.value_or(Range{}));
}

}  // namespace kestrion::cli
