// The measurements that the instrument makes by itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrion::cli {

struct Measurement {
    // As the command line and other programs name it: "pk2pk".
    std::string_view name;
    // As people read it: "Peak to peak".
    std::string_view title;
    // The driver's number of this type.
    int type = 0;

    friend bool operator==(const Measurement& a, const Measurement& b) = default;
};

// What came of one.
struct MeasuredValue {
    // Nothing where the signal has no such value, such as the period of a level.
    std::optional<double> value;
    // As the instrument tells it, "V" or "%"; may be empty.
    std::string unit;
};

// The value that the instrument's number stands for: one of 9E37 and above says that there is none.
[[nodiscard]] std::optional<double> ValueOrNone(double number);

// Every measurement of one source, and those that are made where none is named.
[[nodiscard]] std::vector<Measurement> AllMeasurements();
[[nodiscard]] std::vector<Measurement> UsualMeasurements();

// Parses "frequency,Rise": names split at commas, their letter case and blanks around them ignored.
// Throws bad usage for an unknown or empty name, which says what is legal, and for a name given
// twice.
[[nodiscard]] std::vector<Measurement> ParseMeasurements(std::string_view list);

}  // namespace kestrion::cli
