#include "virtual/measure.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <span>

#include "virtual/edges.h"

namespace virtual_scope {
namespace {

constexpr double kHysteresis = 0.1;  // of the amplitude

std::vector<Edge> EdgesOf(std::span<const double> volts, const Levels& levels, double middle) {
    const double hysteresis = kHysteresis * levels.Amplitude();
    return hysteresis == 0 ? std::vector<Edge>() : FindEdges(volts, middle, hysteresis);
}

double Mean(std::span<const double> volts) {
    return std::accumulate(volts.begin(), volts.end(), 0.0) / static_cast<double>(volts.size());
}

double Rms(std::span<const double> volts) {
    return std::sqrt(std::inner_product(volts.begin(), volts.end(), volts.begin(), 0.0) /
                     static_cast<double>(volts.size()));
}

double StandardDeviation(std::span<const double> volts) {
    const double mean = Mean(volts);
    const double sum = std::accumulate(
        volts.begin(), volts.end(), 0.0,
        [mean](double total, double point) { return total + (point - mean) * (point - mean); });
    return std::sqrt(sum / static_cast<double>(volts.size()));
}

double Median(std::vector<double> volts) {
    const auto middle = volts.begin() + static_cast<std::ptrdiff_t>(volts.size() / 2);
    std::ranges::nth_element(volts, middle);
    return *middle;
}

// Percent of the points within so many standard deviations of the mean.
double PartWithin(std::span<const double> volts, double deviations) {
    const double mean = Mean(volts);
    const double limit = deviations * StandardDeviation(volts);
    const auto inside =
        std::ranges::count_if(volts, [&](double point) { return std::abs(point - mean) <= limit; });
    return 100.0 * static_cast<double>(inside) / static_cast<double>(volts.size());
}

// One waveform with all that its measurements need.
class Subject {
  public:
    Subject(const MeasuredPoints& points, const LevelSetup& setup)
        : volts_(points.volts),
          interval_(points.interval),
          levels_(FindLevels(volts_, setup)),
          edges_(EdgesOf(volts_, levels_, levels_.reference.mid)) {}

    [[nodiscard]] const Levels& levels() const { return levels_; }

    // Seconds of the first edge of that direction.
    [[nodiscard]] double Transition(bool rising) const {
        const ReferenceLevels& reference = levels_.reference;
        for (const Edge& edge : edges_) {
            const double points =
                edge.rising != rising
                    ? -1
                    : TransitionPoints(volts_, edge, rising ? reference.low : reference.high,
                                       rising ? reference.high : reference.low);
            if (points >= 0) {
                return points * interval_;
            }
        }
        return kNotANumber;
    }

    // Seconds from the first edge to the next of the same direction.
    [[nodiscard]] double Period() const {
        return edges_.size() < 3 ? kNotANumber : (edges_[2].place - edges_[0].place) * interval_;
    }

    // Seconds from the first edge of that direction to the next edge.
    [[nodiscard]] double Width(bool positive) const {
        const std::size_t first = !edges_.empty() && edges_[0].rising == positive ? 0 : 1;
        return edges_.size() < first + 2
                   ? kNotANumber
                   : (edges_[first + 1].place - edges_[first].place) * interval_;
    }

    [[nodiscard]] double Duty(bool positive) const {
        return Period() == kNotANumber ? kNotANumber : 100 * Width(positive) / Period();
    }

    [[nodiscard]] double Burst() const {
        return edges_.size() < 2 ? kNotANumber
                                 : (edges_.back().place - edges_.front().place) * interval_;
    }

    [[nodiscard]] double Overshoot(double volts) const {
        return levels_.Amplitude() == 0 ? kNotANumber : 100 * volts / levels_.Amplitude();
    }

    // The points of the first cycle; none without a cycle.
    [[nodiscard]] std::span<const double> Cycle() const {
        if (edges_.size() < 3) {
            return {};
        }
        const auto first = static_cast<std::size_t>(std::ceil(edges_[0].place));
        const auto end = static_cast<std::size_t>(std::ceil(edges_[2].place));
        return volts_.subspan(first, end - first);
    }

    template <typename Function>
    [[nodiscard]] double OfCycle(Function function) const {
        const std::span<const double> cycle = Cycle();
        return cycle.empty() ? kNotANumber : function(cycle);
    }

    [[nodiscard]] double Area(std::span<const double> volts) const {
        return Mean(volts) * static_cast<double>(volts.size()) * interval_;
    }

  private:
    std::span<const double> volts_;
    double interval_;
    Levels levels_;
    std::vector<Edge> edges_;
};

// What follows from the values alone.
std::optional<double> MeasureValues(MeasurementType type, const MeasuredPoints& points) {
    using enum MeasurementType;
    const std::span<const double> volts = points.volts;
    switch (type) {
        case kRms:
            return Rms(volts);
        case kMean:
            return Mean(volts);
        case kArea:
            return Mean(volts) * static_cast<double>(volts.size()) * points.interval;
        case kMedian:
            return Median(points.volts);
        case kStandardDeviation:
            return StandardDeviation(volts);
        case kSigma1:
            return PartWithin(volts, 1);
        case kSigma2:
            return PartWithin(volts, 2);
        case kSigma3:
            return PartWithin(volts, 3);
        default:
            return std::nullopt;
    }
}

std::optional<double> MeasureLevels(MeasurementType type, const Subject& subject) {
    using enum MeasurementType;
    const Levels& levels = subject.levels();
    switch (type) {
        case kPeakToPeak:
            return levels.maximum - levels.minimum;
        case kMaximum:
            return levels.maximum;
        case kMinimum:
            return levels.minimum;
        case kHigh:
            return levels.high;
        case kLow:
            return levels.low;
        case kAmplitude:
            return levels.Amplitude();
        case kPositiveOvershoot:
            return subject.Overshoot(levels.maximum - levels.high);
        case kNegativeOvershoot:
            return subject.Overshoot(levels.low - levels.minimum);
        default:
            return std::nullopt;
    }
}

double MeasureEdges(MeasurementType type, const Subject& subject) {
    using enum MeasurementType;
    switch (type) {
        case kRise:
            return subject.Transition(true);
        case kFall:
            return subject.Transition(false);
        case kPeriod:
            return subject.Period();
        case kFrequency:
            return subject.Period() == kNotANumber ? kNotANumber : 1 / subject.Period();
        case kNegativeWidth:
            return subject.Width(false);
        case kPositiveWidth:
            return subject.Width(true);
        case kNegativeDuty:
            return subject.Duty(false);
        case kPositiveDuty:
            return subject.Duty(true);
        case kBurst:
            return subject.Burst();
        case kCycleRms:
            return subject.OfCycle(Rms);
        case kCycleMean:
            return subject.OfCycle(Mean);
        case kCycleArea:
            return subject.OfCycle(
                [&](std::span<const double> cycle) { return subject.Area(cycle); });
        default:
            return kNotANumber;
    }
}

// The times of the edges of one direction.
std::vector<double> EdgeTimes(const MeasuredPoints& points, const LevelSetup& setup, bool isSecond,
                              bool rising) {
    if (points.volts.empty()) {
        return {};
    }
    const Levels levels = FindLevels(points.volts, setup);
    const double middle = isSecond ? levels.reference.mid2 : levels.reference.mid;
    std::vector<double> times;
    for (const Edge& edge : EdgesOf(points.volts, levels, middle)) {
        if (edge.rising == rising) {
            times.push_back(points.start + edge.place * points.interval);
        }
    }
    return times;
}

}  // namespace

double Measure(MeasurementType type, const MeasuredPoints& points, const LevelSetup& setup) {
    if (points.volts.empty()) {
        return kNotANumber;
    }
    if (const auto value = MeasureValues(type, points)) {
        return *value;
    }
    const Subject subject(points, setup);
    if (const auto value = MeasureLevels(type, subject)) {
        return *value;
    }
    return MeasureEdges(type, subject);
}

double MeasureDelay(const MeasuredPoints& first, const MeasuredPoints& second,
                    const LevelSetup& setup, const EdgeChoice& edges) {
    const std::vector<double> from = EdgeTimes(first, setup, false, edges.firstRises);
    const std::vector<double> to = EdgeTimes(second, setup, true, edges.secondRises);
    if (from.empty() || to.empty()) {
        return kNotANumber;
    }
    if (edges.backwards) {
        return to.back() - from.front();
    }
    const auto next = std::ranges::lower_bound(to, from.front());
    return next == to.end() ? kNotANumber : *next - from.front();
}

double MeasurePhase(const MeasuredPoints& first, const MeasuredPoints& second,
                    const LevelSetup& setup) {
    const double delay = MeasureDelay(first, second, setup, {});
    const double period = Measure(MeasurementType::kPeriod, first, setup);
    return delay == kNotANumber || period == kNotANumber ? kNotANumber : 360 * delay / period;
}

std::string_view UnitOf(MeasurementType type) {
    using enum MeasurementType;
    switch (type) {
        case kRise:
        case kFall:
        case kPeriod:
        case kNegativeWidth:
        case kPositiveWidth:
        case kBurst:
        case kDelay:
            return "s";
        case kFrequency:
            return "Hz";
        case kNegativeDuty:
        case kPositiveDuty:
        case kPositiveOvershoot:
        case kNegativeOvershoot:
        case kSigma1:
        case kSigma2:
        case kSigma3:
            return "%";
        case kArea:
        case kCycleArea:
            return "Vs";
        case kPhase:
            return "deg";
        case kRms:
        case kPeakToPeak:
        case kMaximum:
        case kMinimum:
        case kHigh:
        case kLow:
        case kMean:
        case kAmplitude:
        case kCycleRms:
        case kCycleMean:
        case kMedian:
        case kStandardDeviation:
            return "V";
        default:
            return "";
    }
}

}  // namespace virtual_scope
