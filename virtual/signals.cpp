#include "virtual/signals.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <string_view>

namespace virtual_scope {
namespace {

constexpr double kSineFrequency = 1e3;
constexpr double kSineAmplitude = 1.0;
constexpr double kSquareFrequency = 1e4;
constexpr double kLogicHigh = 3.3;
constexpr double kBaud = 9600;
constexpr std::string_view kSerialText = "Kestrion\r\n";
constexpr double kNoiseAmplitude = 0.2;
// Samples that make one point of the hi-res mode.
constexpr double kHighResolutionSamples = 16;

enum Channel { kSine, kSquare, kSerial, kNoise };

// The mean of the serial line's levels, which coupling by a capacitor takes away.
double SerialMean() {
    const auto bits = SerialSampler::LineBits(kSerialText);
    return kLogicHigh * std::accumulate(bits.begin(), bits.end(), 0.0) /
           static_cast<double>(bits.size());
}

Coupling CouplingOf(const Record& record, int channel) {
    return record.channels.at(static_cast<std::size_t>(channel)).coupling;
}

double LogicMean(const Record& record, int channel) {
    if (CouplingOf(record, channel) == Coupling::kDc) {
        return 0;
    }
    return channel == kSquare ? kLogicHigh / 2 : SerialMean();
}

// The mean of n values scatters by the root of n less than one.
double NoiseAmplitude(const Record& record) {
    switch (record.mode) {
        case AcquisitionMode::kAverage:
            return kNoiseAmplitude / std::sqrt(static_cast<double>(record.acquisitions));
        case AcquisitionMode::kHiRes:
            return kNoiseAmplitude / std::sqrt(kHighResolutionSamples);
        default:
            return kNoiseAmplitude;
    }
}

double SerialCrossing(bool rising) {
    const auto bits = SerialSampler::LineBits(kSerialText);
    // The line idles high before the first bit, the start bit.
    const auto edge = rising ? std::ranges::find(bits, 1) : bits.begin();
    return static_cast<double>(edge - bits.begin()) / kBaud;
}

}  // namespace

VoltRange RangeOfChannel(const Record& record, int channel) {
    if (CouplingOf(record, channel) == Coupling::kGround) {
        return {};
    }
    switch (channel) {
        case kSine:
            return {-kSineAmplitude, kSineAmplitude};
        case kSquare:
        case kSerial: {
            const double mean = LogicMean(record, channel);
            return {0.0 - mean, kLogicHigh - mean};  // without a mean 0, not -0
        }
        default:
            return {-NoiseAmplitude(record), NoiseAmplitude(record)};
    }
}

std::optional<double> CrossingOfChannel(const Record& record, int channel, double level,
                                        bool rising) {
    const VoltRange range = RangeOfChannel(record, channel);
    if (level <= range.low || level >= range.high) {
        return std::nullopt;
    }
    switch (channel) {
        case kSine: {
            const double turns = std::asin(level / kSineAmplitude) / (2 * std::numbers::pi);
            return (rising ? turns : 0.5 - turns) / kSineFrequency;
        }
        case kSquare:
            return rising ? 0.0 : 0.5 / kSquareFrequency;
        case kSerial:
            return SerialCrossing(rising);
        default:
            return 0.0;
    }
}

SamplerPointer MakeChannelSampler(const Record& record, int channel) {
    if (CouplingOf(record, channel) == Coupling::kGround) {
        return std::make_unique<ConstantSampler>(0.0);
    }
    TimeAxis axis = record.axis;
    axis.zero += record.shift;
    const VoltRange range = RangeOfChannel(record, channel);
    switch (channel) {
        case kSine:
            return std::make_unique<SineSampler>(axis, kSineFrequency, kSineAmplitude);
        case kSquare:
            return std::make_unique<SquareSampler>(axis, kSquareFrequency, range.low, range.high);
        case kSerial:
            return std::make_unique<SerialSampler>(axis, kBaud, kSerialText, range.low, range.high);
        default:
            return std::make_unique<NoiseSampler>(record.acquisition, NoiseAmplitude(record));
    }
}

}  // namespace virtual_scope
