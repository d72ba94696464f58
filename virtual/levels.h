// The levels of a waveform that its measurements refer to.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace virtual_scope {

// In the order of the words of MEASUrement:METHod.
enum class LevelMethod : std::uint8_t { kHistogram, kMinMax, kMean };

// In the order of the words of MEASUrement:REFLevel:METHod.
enum class LevelUnit : std::uint8_t { kAbsolute, kPercent };

struct ReferenceLevels {
    double high = 0;
    double low = 0;
    double mid = 0;   // of the first source
    double mid2 = 0;  // of the second
};

struct LevelSetup {
    LevelMethod method = LevelMethod::kHistogram;
    LevelUnit unit = LevelUnit::kPercent;
    ReferenceLevels percent = {90, 10, 50, 50};  // of the way from low to high
    ReferenceLevels absolute;                    // volts
};

struct Levels {
    double minimum = 0;
    double maximum = 0;
    double low = 0;  // what counts as 0 percent
    double high = 0;
    ReferenceLevels reference;  // volts

    [[nodiscard]] double Amplitude() const { return high - low; }
};

// Low and high are the least and greatest value (min-max), the most frequent values of the lower
// and the upper half (histogram), or the means of what lies in the two halves (mean). `points`
// holds at least one.
[[nodiscard]] Levels FindLevels(std::span<const double> points, const LevelSetup& setup);

}  // namespace virtual_scope
