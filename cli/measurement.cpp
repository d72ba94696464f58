#include "cli/measurement.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "cli/ascii.h"
#include "cli/failure.h"
#include "cli/suggest.h"

namespace kestrion::cli {
namespace {

constexpr double kNoValue = 9e37;

// In the order in which they are shown, the usual ones first.
constexpr std::array kMeasurements{Measurement{"frequency", "Frequency", 2},
                                   Measurement{"period", "Period", 3},
                                   Measurement{"pk2pk", "Peak to peak", 5},
                                   Measurement{"amplitude", "Amplitude", 15},
                                   Measurement{"maximum", "Maximum", 6},
                                   Measurement{"minimum", "Minimum", 7},
                                   Measurement{"mean", "Mean", 10},
                                   Measurement{"rms", "RMS", 4},
                                   Measurement{"rise", "Rise time", 0},
                                   Measurement{"fall", "Fall time", 1},
                                   Measurement{"pduty", "Positive duty cycle", 14},
                                   Measurement{"high", "High level", 8},
                                   Measurement{"low", "Low level", 9},
                                   Measurement{"pwidth", "Positive width", 12},
                                   Measurement{"nwidth", "Negative width", 11},
                                   Measurement{"nduty", "Negative duty cycle", 13},
                                   Measurement{"povershoot", "Positive overshoot", 18},
                                   Measurement{"novershoot", "Negative overshoot", 19},
                                   Measurement{"cmean", "Cycle mean", 17},
                                   Measurement{"crms", "Cycle RMS", 16},
                                   Measurement{"area", "Area", 20},
                                   Measurement{"carea", "Cycle area", 21},
                                   Measurement{"burst", "Burst width", 22}};
constexpr std::size_t kUsual = 11;

Failure Unknown(const std::string& name) {
    std::vector<std::string> names;
    for (const Measurement& measurement : kMeasurements) {
        names.emplace_back(measurement.name);
    }
    const std::vector<std::string> near = Nearest(name, names, 1);
    const std::string meant = near.empty() ? "" : fmt::format("Did you mean {}? ", near.front());
    return BadUsage(fmt::format("Unknown measurement '{}'.", name),
                    fmt::format("{}Legal measurements are {}.", meant, Enumerate(names)));
}

}  // namespace

std::optional<double> ValueOrNone(double number) {
    return std::isfinite(number) && std::abs(number) < kNoValue ? std::optional(number)
                                                                : std::nullopt;
}

std::vector<Measurement> AllMeasurements() {
    return {kMeasurements.begin(), kMeasurements.end()};
}

std::vector<Measurement> UsualMeasurements() {
    return {kMeasurements.begin(), kMeasurements.begin() + kUsual};
}

std::vector<Measurement> ParseMeasurements(std::string_view list) {
    std::vector<Measurement> measurements;
    for (std::string_view part : Split(list, ',')) {
        const std::string_view name = TrimBlanks(part);
        const auto found = std::ranges::find_if(kMeasurements, [&](const Measurement& known) {
            return ToUpper(known.name) == ToUpper(name);
        });
        if (found == kMeasurements.end()) {
            throw Unknown(std::string(name));
        }
        if (std::ranges::find(measurements, *found) != measurements.end()) {
            throw BadUsage(fmt::format("Measurement {} is named twice.", found->name));
        }
        measurements.push_back(*found);
    }
    return measurements;
}

}  // namespace kestrion::cli
