#include "virtual/levels.h"

#include <algorithm>

namespace virtual_scope {
namespace {

constexpr std::size_t kBins = 256;

struct LowAndHigh {
    double low;
    double high;
};

// The means of the points in the most frequent bin of either half.
LowAndHigh MostFrequent(std::span<const double> points, double minimum, double maximum) {
    struct Bin {
        double sum = 0;
        double count = 0;
    };
    std::array<Bin, kBins> bins;
    const double scale = (kBins - 1) / (maximum - minimum);
    for (const double point : points) {
        Bin& bin = bins[static_cast<std::size_t>((point - minimum) * scale + 0.5)];
        bin.sum += point;
        bin.count += 1;
    }
    const auto middle = bins.begin() + kBins / 2;
    const Bin low = *std::max_element(bins.begin(), middle,
                                      [](const Bin& a, const Bin& b) { return a.count < b.count; });
    // Of bins that are hit as often, the outermost.
    const Bin high =
        *std::max_element(bins.rbegin(), std::make_reverse_iterator(middle),
                          [](const Bin& a, const Bin& b) { return a.count < b.count; });
    return {low.sum / low.count, high.sum / high.count};
}

LowAndHigh MeansOfHalves(std::span<const double> points, double minimum, double maximum) {
    const double middle = (minimum + maximum) / 2;
    double sums[2] = {};
    double counts[2] = {};
    for (const double point : points) {
        const std::size_t half = point > middle ? 1 : 0;
        sums[half] += point;
        counts[half] += 1;
    }
    return {sums[0] / counts[0], sums[1] / counts[1]};
}

LowAndHigh FindLowAndHigh(std::span<const double> points, LevelMethod method, double minimum,
                          double maximum) {
    // A flat line has neither halves nor bins.
    if (method == LevelMethod::kMinMax || minimum == maximum) {
        return {minimum, maximum};
    }
    return method == LevelMethod::kMean ? MeansOfHalves(points, minimum, maximum)
                                        : MostFrequent(points, minimum, maximum);
}

ReferenceLevels InVolts(const ReferenceLevels& percent, const LowAndHigh& ends) {
    const auto at = [&](double part) { return ends.low + (ends.high - ends.low) * part / 100; };
    return {at(percent.high), at(percent.low), at(percent.mid), at(percent.mid2)};
}

}  // namespace

Levels FindLevels(std::span<const double> points, const LevelSetup& setup) {
    const auto [minimum, maximum] = std::ranges::minmax(points);
    const LowAndHigh ends = FindLowAndHigh(points, setup.method, minimum, maximum);
    return {.minimum = minimum,
            .maximum = maximum,
            .low = ends.low,
            .high = ends.high,
            .reference =
                setup.unit == LevelUnit::kAbsolute ? setup.absolute : InVolts(setup.percent, ends)};
}

}  // namespace virtual_scope
