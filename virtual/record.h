// A record: everything that its points and its preamble follow from. The points themselves are
// never kept; they are made when they are read.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "virtual/sampler.h"
#include "virtual/time_axis.h"

namespace virtual_scope {

inline constexpr int kMaxChannels = 4;
inline constexpr double kDivisions = 10;  // of the screen, which a record fills

// In the order of the keywords of CH<x>:COUPling.
enum class Coupling : std::uint8_t { kAc, kDc, kGround, kDcReject };

// In the order of the keywords of ACQuire:MODe.
enum class AcquisitionMode : std::uint8_t {
    kSample,
    kPeakDetect,
    kHiRes,
    kEnvelope,
    kAverage,
    kWaveformDatabase,
};

struct ChannelSetup {
    double scale = 0.5;   // volts per division
    double position = 0;  // divisions
    double offset = 0;    // volts in the middle of the screen
    Coupling coupling = Coupling::kDc;
};

// The keywords of DATa:SOUrce: four of each kind, in the order of the kinds.
inline constexpr std::string_view kSourceWords =
    "CH1|CH2|CH3|CH4|MATH1|MATH2|MATH3|MATH4|REF1|REF2|REF3|REF4";

enum class SourceKind : std::uint8_t { kChannel, kMath, kReference };

struct WaveformSource {
    SourceKind kind = SourceKind::kChannel;
    int index = 0;  // counted from 0
};

struct Record {
    std::int64_t length = 10000;
    TimeAxis axis;
    AcquisitionMode mode = AcquisitionMode::kSample;
    std::array<ChannelSetup, kMaxChannels> channels;
    std::uint64_t acquisition = 0;

    // Pairs of points hold the least and the greatest value of their time.
    [[nodiscard]] bool HoldsPairs() const {
        return mode == AcquisitionMode::kPeakDetect || mode == AcquisitionMode::kEnvelope;
    }
};

// What is in the reference memories until something is stored there.
[[nodiscard]] Record ReferenceRecord();

// The signal of the source, coupled as the record's channel is. A math waveform is the first
// channel less the second.
[[nodiscard]] SamplerPointer MakeSampler(const Record& record, const WaveformSource& source);

}  // namespace virtual_scope
