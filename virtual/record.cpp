#include "virtual/record.h"

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

// The mean of the serial line's levels, which coupling by a capacitor takes away.
double SerialMean() {
    const auto bits = SerialSampler::LineBits(kSerialText);
    return kLogicHigh * std::accumulate(bits.begin(), bits.end(), 0.0) /
           static_cast<double>(bits.size());
}

SamplerPointer MakeChannelSampler(const Record& record, int channel) {
    const Coupling coupling = record.channels.at(static_cast<std::size_t>(channel)).coupling;
    if (coupling == Coupling::kGround) {
        return std::make_unique<ConstantSampler>(0.0);
    }
    const bool blocksMean = coupling != Coupling::kDc;
    const TimeAxis& axis = record.axis;
    switch (channel) {
        case 0:
            return std::make_unique<SineSampler>(axis, kSineFrequency, kSineAmplitude);
        case 1: {
            const double mean = blocksMean ? kLogicHigh / 2 : 0.0;
            return std::make_unique<SquareSampler>(axis, kSquareFrequency, -mean,
                                                   kLogicHigh - mean);
        }
        case 2: {
            const double mean = blocksMean ? SerialMean() : 0.0;
            return std::make_unique<SerialSampler>(axis, kBaud, kSerialText, -mean,
                                                   kLogicHigh - mean);
        }
        default:
            return std::make_unique<NoiseSampler>(record.acquisition, kNoiseAmplitude);
    }
}

}  // namespace

Record ReferenceRecord() {
    Record record;
    record.length = 1000;
    record.axis = {.zero = 0, .trigger = 500, .interval = 4e-6};
    return record;
}

SamplerPointer MakeSampler(const Record& record, const WaveformSource& source) {
    switch (source.kind) {
        case SourceKind::kChannel:
            return MakeChannelSampler(record, source.index);
        case SourceKind::kMath:
            return std::make_unique<DifferenceSampler>(MakeChannelSampler(record, 0),
                                                       MakeChannelSampler(record, 1));
        case SourceKind::kReference:
            break;
    }
    return MakeChannelSampler(record, 0);
}

}  // namespace virtual_scope
