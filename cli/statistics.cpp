#include "cli/statistics.h"

#include <algorithm>

namespace kestrion::cli {
namespace {

constexpr double kHysteresis = 0.1;

// A sum that carries the rounding error of each addition into the next one, so that the mean of a
// hundred million points keeps its digits.
class CompensatedSum {
  public:
    void Add(double value) {
        const double corrected = value - error_;
        const double next = sum_ + corrected;
        error_ = (next - sum_) - corrected;
        sum_ = next;
    }
    [[nodiscard]] double Value() const { return sum_; }

  private:
    double sum_ = 0;
    double error_ = 0;
};

void MeasureLevels(std::span<const double> values, Statistics& result) {
    result.minimum = values.front();
    result.maximum = values.front();
    CompensatedSum sum;
    for (double value : values) {
        result.minimum = std::min(result.minimum, value);
        result.maximum = std::max(result.maximum, value);
        sum.Add(value);
    }
    result.mean = sum.Value() / static_cast<double>(values.size());
}

// Finds the rising crossings one after the other.
class CrossingCounter {
  public:
    CrossingCounter(double low, double middle, double high)
        : low_(low), middle_(middle), high_(high) {}

    void Add(double position, double value) {
        if (value <= low_) {
            armed_ = true;
            crossed_ = false;
        } else if (armed_) {
            AddRising(position, value);
        }
        previous_ = value;
    }

    // Points from one crossing to the next, on average.
    [[nodiscard]] std::optional<double> Period() const {
        if (count_ < 2) {
            return {};
        }
        return (last_ - first_) / static_cast<double>(count_ - 1);
    }

  private:
    void AddRising(double position, double value) {
        if (previous_ < middle_ && value >= middle_) {
            crossing_ = position - (value - middle_) / (value - previous_);
            crossed_ = true;
        }
        if (value < high_ || !crossed_) {
            return;
        }
        first_ = count_ == 0 ? crossing_ : first_;
        last_ = crossing_;
        ++count_;
        armed_ = false;
    }

    double low_;
    double middle_;
    double high_;
    double previous_ = 0;
    bool armed_ = false;
    // The last crossing, which the signal has yet to confirm by reaching the upper level.
    bool crossed_ = false;
    double crossing_ = 0;
    double first_ = 0;
    double last_ = 0;
    std::size_t count_ = 0;
};

std::optional<double> MeasureFrequency(std::span<const double> values, double minimum,
                                       double maximum, double xIncrement) {
    const double height = maximum - minimum;
    if (!(height > 0) || !(xIncrement > 0)) {
        return {};
    }
    const double middle = minimum + height / 2;
    CrossingCounter counter(middle - kHysteresis * height, middle, middle + kHysteresis * height);
    for (std::size_t i = 0; i < values.size(); ++i) {
        counter.Add(static_cast<double>(i), values[i]);
    }
    const std::optional<double> period = counter.Period();
    return period ? std::optional(1 / (*period * xIncrement)) : std::nullopt;
}

}  // namespace

Statistics Describe(std::span<const double> values, double xIncrement) {
    Statistics result;
    result.points = values.size();
    if (values.empty()) {
        return result;
    }
    MeasureLevels(values, result);
    result.frequency = MeasureFrequency(values, result.minimum, result.maximum, xIncrement);
    return result;
}

}  // namespace kestrion::cli
