// Measurements of a waveform.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "virtual/levels.h"

namespace virtual_scope {

// The number that stands for none (SCPI, volume 1, 7.2.1.5).
inline constexpr double kNotANumber = 9.91e37;

inline constexpr std::string_view kMeasurementWords =
    "RISe|FALL|FREQuency|PERIod|RMS|PK2Pk|MAXimum|MINImum|HIGH|LOW|MEAN|NWIdth|PWIdth|NDUty|PDUty|"
    "AMPlitude|CRMs|CMEan|POVershoot|NOVershoot|AREa|CARea|BURst|DELay|PHAse|HITs|MEDian|PEAKHits|"
    "SIGMA1|SIGMA2|SIGMA3|STDdev|WAVEFORMS|EYEHeight|EYEWIdth|PTOP|PBASe|EXTINCTRATIO|EXTINCTPCT|"
    "EXTINCTDB|PCTCROss|PCROss|TCROss|QFACtor|SNRatio|PKPKNoise|RMSNoise|PKPKJitter|RMSJitter|"
    "SIXSigmajit|DISTDUty|UNDEFINED";

// In the order of the words. Those that need a histogram box or an eye diagram have no names here;
// there is none to measure.
enum class MeasurementType : std::uint8_t {
    kRise,
    kFall,
    kFrequency,
    kPeriod,
    kRms,
    kPeakToPeak,
    kMaximum,
    kMinimum,
    kHigh,
    kLow,
    kMean,
    kNegativeWidth,
    kPositiveWidth,
    kNegativeDuty,
    kPositiveDuty,
    kAmplitude,
    kCycleRms,
    kCycleMean,
    kPositiveOvershoot,
    kNegativeOvershoot,
    kArea,
    kCycleArea,
    kBurst,
    kDelay,
    kPhase,
    kMedian = 26,
    kSigma1 = 28,
    kSigma2,
    kSigma3,
    kStandardDeviation,
    kUndefined = 51,
};

// A waveform or the gated part of it.
struct MeasuredPoints {
    std::vector<double> volts;
    double start = 0;  // time of the first
    double interval = 1;
};

struct EdgeChoice {
    bool firstRises = true;
    bool secondRises = true;
    bool backwards = false;  // the second source is searched from its end
};

// Seconds, volts, hertz, percent or degrees; `kNotANumber` for what the waveform doesn't have.
// Times are those of the crossings of the reference levels, on straight lines between the points.
// An edge counts once the signal has moved a tenth of its amplitude to either side of the middle
// level.
[[nodiscard]] double Measure(MeasurementType type, const MeasuredPoints& points,
                             const LevelSetup& setup);

// Delay and phase: from an edge of the first waveform to one of the second.
[[nodiscard]] double MeasureDelay(const MeasuredPoints& first, const MeasuredPoints& second,
                                  const LevelSetup& setup, const EdgeChoice& edges);
[[nodiscard]] double MeasurePhase(const MeasuredPoints& first, const MeasuredPoints& second,
                                  const LevelSetup& setup);

// "V", "s", "Hz", "%", "Vs", "deg"; nothing for a type without a unit.
[[nodiscard]] std::string_view UnitOf(MeasurementType type);

}  // namespace virtual_scope
