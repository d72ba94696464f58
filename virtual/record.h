// A record: everything that its points and its preamble follow from. The points themselves are
// never kept; they are made when they are read.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "virtual/math_expression.h"
#include "virtual/sampler.h"
#include "virtual/stored_waveform.h"
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

// Keywords for waveforms: four of each kind, in the order of the kinds.
inline constexpr std::string_view kSourceWords =
    "CH1|CH2|CH3|CH4|MATH1|MATH2|MATH3|MATH4|REF1|REF2|REF3|REF4";

enum class SourceKind : std::uint8_t { kChannel, kMath, kReference, kDigital };

struct WaveformSource {
    SourceKind kind = SourceKind::kChannel;
    int index = 0;  // counted from 0; 0 for the digital channels, which come together
};

using DigitalThresholds = std::array<double, 16>;  // volts

struct Record {
    std::int64_t length = 10000;
    TimeAxis axis;
    double shift = 0;       // the trigger, in seconds of the signals' own time
    bool triggered = true;  // otherwise each acquisition begins at another place
    AcquisitionMode mode = AcquisitionMode::kSample;
    std::int64_t acquisitions = 1;  // that an average or an envelope is made of
    bool dense = false;             // many acquisitions are laid over each other
    std::array<ChannelSetup, kMaxChannels> channels;
    DigitalThresholds thresholds{};
    std::array<MathPointer, kMaxChannels> math;
    std::array<StoredPointer, kMaxChannels> references;
    std::uint64_t acquisition = 0;

    // The same of an acquisition that came so many before it.
    [[nodiscard]] Record Earlier(std::uint64_t ago) const;

    // Pairs of points hold the least and the greatest value of their time.
    [[nodiscard]] bool HoldsPairs() const {
        return mode == AcquisitionMode::kPeakDetect || mode == AcquisitionMode::kEnvelope;
    }
    // The channels are kept as a map of how often each place of the screen was hit.
    [[nodiscard]] bool HoldsMap() const {
        return dense || mode == AcquisitionMode::kWaveformDatabase;
    }
};

// The record of a reference memory, which `from` holds.
[[nodiscard]] Record ReferenceRecord(const Record& from, int index);

// The signal of the source. Pairs are the extremes of finer points: in peak detect of one
// acquisition, in an envelope of up to `kEnvelopeDepth` of them, the newest ones.
inline constexpr std::int64_t kEnvelopeDepth = 4;
[[nodiscard]] SamplerPointer MakeSampler(const Record& record, const WaveformSource& source);

}  // namespace virtual_scope
