// Measurements of a record in plain words, for holding the instrument's against.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "kestrion/enums.h"
#include "tests/system/scope_client.h"

namespace kestrion {

// What the levels of a record refer to.
struct MeasuredLevels {
    KestrionMeasurementMethodEnum method = KestrionMeasurementMethodMinMax;
    double high = 90.0;  // percent of the way from low to high, as are the others
    double low = 10.0;
    double mid = 50.0;
};

class MeasuredRecord {
  public:
    explicit MeasuredRecord(const Waveform& waveform, const MeasuredLevels& levels = {})
        : volts_(waveform.volts), start_(waveform.initialX), interval_(waveform.xIncrement) {
        FindEnds(levels.method);
        low_ = Between(levels.low);
        high_ = Between(levels.high);
        for (std::size_t i = 1; i < volts_.size(); ++i) {
            if (Crosses(i, Between(levels.mid), true) || Crosses(i, Between(levels.mid), false)) {
                crossings_.push_back(
                    {i, CrossingIn(i, Between(levels.mid)), Crosses(i, Between(levels.mid), true)});
            }
        }
    }

    [[nodiscard]] double Least() const { return *std::ranges::min_element(volts_); }
    [[nodiscard]] double Greatest() const { return *std::ranges::max_element(volts_); }
    [[nodiscard]] double Bottom() const { return bottom_; }
    [[nodiscard]] double Top() const { return top_; }
    [[nodiscard]] double Amplitude() const { return top_ - bottom_; }
    [[nodiscard]] double Mean() const { return MeanOf(0, volts_.size()); }
    [[nodiscard]] double Rms() const { return RmsOf(0, volts_.size()); }
    [[nodiscard]] double Area() const {
        return Mean() * static_cast<double>(volts_.size()) * interval_;
    }
    [[nodiscard]] double Median() const {
        std::vector<double> sorted = volts_;
        std::ranges::sort(sorted);
        return sorted[sorted.size() / 2];
    }
    [[nodiscard]] double Deviation() const { return std::sqrt(Rms() * Rms() - Mean() * Mean()); }
    // Percent of the points that are no further from the mean.
    [[nodiscard]] double Within(double deviations) const {
        const double mean = Mean();
        const double limit = deviations * Deviation();
        const auto inside = std::ranges::count_if(
            volts_, [=](double volts) { return std::abs(volts - mean) <= limit; });
        return 100.0 * static_cast<double>(inside) / static_cast<double>(volts_.size());
    }

    // Seconds of the first edge of which both reference levels are in the record.
    [[nodiscard]] double Transition(bool rising) const {
        const double from = rising ? low_ : high_;
        const double to = rising ? high_ : low_;
        for (const Crossing& edge : crossings_) {
            std::size_t before = edge.point;
            std::size_t behind = edge.point;
            while (before > 0 && !Crosses(before, from, rising)) {
                --before;
            }
            while (behind < volts_.size() && !Crosses(behind, to, rising)) {
                ++behind;
            }
            if (edge.rising == rising && before > 0 && behind < volts_.size()) {
                return CrossingIn(behind, to) - CrossingIn(before, from);
            }
        }
        return -1.0;
    }
    [[nodiscard]] double Period() const { return crossings_[2].time - crossings_[0].time; }
    [[nodiscard]] double Width(bool positive) const {
        const std::size_t first = crossings_[0].rising == positive ? 0 : 1;
        return crossings_[first + 1].time - crossings_[first].time;
    }
    [[nodiscard]] double Burst() const { return crossings_.back().time - crossings_.front().time; }
    [[nodiscard]] double CycleMean() const { return MeanOf(CycleStart(), CycleEnd()); }
    [[nodiscard]] double CycleRms() const { return RmsOf(CycleStart(), CycleEnd()); }
    [[nodiscard]] double CycleArea() const { return CycleMean() * Period(); }

    [[nodiscard]] std::vector<double> EdgeTimes(bool rising) const {
        std::vector<double> times;
        for (const Crossing& crossing : crossings_) {
            if (crossing.rising == rising) {
                times.push_back(crossing.time);
            }
        }
        return times;
    }

    // Nothing for what takes two sources, a histogram box or an eye diagram.
    [[nodiscard]] std::optional<double> Value(KestrionMeasurementTypeEnum type) const {
        switch (type) {
            case KestrionMeasurementTypeRise:
                return Transition(true);
            case KestrionMeasurementTypeFall:
                return Transition(false);
            case KestrionMeasurementTypeFrequency:
                return 1.0 / Period();
            case KestrionMeasurementTypePeriod:
                return Period();
            case KestrionMeasurementTypeRMS:
                return Rms();
            case KestrionMeasurementTypePk2Pk:
                return Greatest() - Least();
            case KestrionMeasurementTypeMaximum:
                return Greatest();
            case KestrionMeasurementTypeMinimum:
                return Least();
            case KestrionMeasurementTypeHigh:
                return Top();
            case KestrionMeasurementTypeLow:
                return Bottom();
            case KestrionMeasurementTypeMean:
                return Mean();
            case KestrionMeasurementTypeNWidth:
                return Width(false);
            case KestrionMeasurementTypePWidth:
                return Width(true);
            case KestrionMeasurementTypeNDuty:
                return 100.0 * Width(false) / Period();
            case KestrionMeasurementTypePDuty:
                return 100.0 * Width(true) / Period();
            case KestrionMeasurementTypeAmplitude:
                return Amplitude();
            case KestrionMeasurementTypeCRMS:
                return CycleRms();
            case KestrionMeasurementTypeCMean:
                return CycleMean();
            case KestrionMeasurementTypePOvershoot:
                return 100.0 * (Greatest() - Top()) / Amplitude();
            case KestrionMeasurementTypeNOvershoot:
                return 100.0 * (Bottom() - Least()) / Amplitude();
            case KestrionMeasurementTypeArea:
                return Area();
            case KestrionMeasurementTypeCArea:
                return CycleArea();
            case KestrionMeasurementTypeBurst:
                return Burst();
            case KestrionMeasurementTypeMedian:
                return Median();
            case KestrionMeasurementTypeSigma1:
                return Within(1);
            case KestrionMeasurementTypeSigma2:
                return Within(2);
            case KestrionMeasurementTypeSigma3:
                return Within(3);
            case KestrionMeasurementTypeStdDev:
                return Deviation();
            default:
                return std::nullopt;
        }
    }

  private:
    struct Crossing {
        std::size_t point;  // the first one behind it
        double time;
        bool rising;
    };

    void FindEnds(KestrionMeasurementMethodEnum method) {
        const double middle = (Least() + Greatest()) / 2;
        if (method == KestrionMeasurementMethodMinMax) {
            bottom_ = Least();
            top_ = Greatest();
        } else if (method == KestrionMeasurementMethodMean) {
            bottom_ = MeanWhere([&](double volts) { return volts <= middle; });
            top_ = MeanWhere([&](double volts) { return volts > middle; });
        } else {
            bottom_ = MostFrequent([&](double volts) { return volts <= middle; });
            top_ = MostFrequent([&](double volts) { return volts > middle; });
        }
    }
    template <typename Choice>
    [[nodiscard]] double MeanWhere(Choice choice) const {
        double sum = 0.0;
        double count = 0.0;
        for (const double volts : volts_) {
            sum += choice(volts) ? volts : 0.0;
            count += choice(volts) ? 1.0 : 0.0;
        }
        return sum / count;
    }
    // The points stand on digitising levels, so equal ones can be counted.
    template <typename Choice>
    [[nodiscard]] double MostFrequent(Choice choice) const {
        std::map<double, int> counts;
        for (const double volts : volts_) {
            counts[volts] += choice(volts) ? 1 : 0;
        }
        return std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; })
            ->first;
    }
    [[nodiscard]] double Between(double percent) const {
        return bottom_ + Amplitude() * percent / 100.0;
    }
    [[nodiscard]] bool Crosses(std::size_t point, double level, bool rising) const {
        return rising ? volts_[point - 1] < level && volts_[point] >= level
                      : volts_[point - 1] > level && volts_[point] <= level;
    }
    // On a straight line from the point before.
    [[nodiscard]] double CrossingIn(std::size_t point, double level) const {
        const double part = (level - volts_[point - 1]) / (volts_[point] - volts_[point - 1]);
        return start_ + (static_cast<double>(point) - 1.0 + part) * interval_;
    }
    [[nodiscard]] std::size_t CycleStart() const { return crossings_[0].point; }
    [[nodiscard]] std::size_t CycleEnd() const { return crossings_[2].point; }
    [[nodiscard]] double MeanOf(std::size_t first, std::size_t end) const {
        double sum = 0.0;
        for (std::size_t i = first; i < end; ++i) {
            sum += volts_[i];
        }
        return sum / static_cast<double>(end - first);
    }
    [[nodiscard]] double RmsOf(std::size_t first, std::size_t end) const {
        double sum = 0.0;
        for (std::size_t i = first; i < end; ++i) {
            sum += volts_[i] * volts_[i];
        }
        return std::sqrt(sum / static_cast<double>(end - first));
    }

    std::vector<double> volts_;
    double start_;
    double interval_;
    double bottom_ = 0.0;
    double top_ = 0.0;
    double low_ = 0.0;
    double high_ = 0.0;
    std::vector<Crossing> crossings_;
};

}  // namespace kestrion
