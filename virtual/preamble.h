// How the points of a waveform are written in a transfer, and what the preamble says of it.
#pragma once

#include <cstdint>

#include "virtual/record.h"

namespace virtual_scope {

// In the order of the keywords of WFMOutpre:ENCdg, :BN_Fmt and :BYT_Or.
enum class Encoding : std::uint8_t { kAscii, kBinary };
enum class NumberFormat : std::uint8_t { kSigned, kUnsigned, kFloat };
enum class ByteOrder : std::uint8_t { kMsbFirst, kLsbFirst };

struct TransferFormat {
    Encoding encoding = Encoding::kBinary;
    NumberFormat format = NumberFormat::kSigned;
    ByteOrder order = ByteOrder::kMsbFirst;
    int width = 1;  // bytes for a point: 1, 2 or 4; floats have 4, the counts of a map 8
};

// A point of `level` stands for (level - offset) * multiplier + zero volts.
struct VerticalScale {
    double multiplier = 1;
    double offset = 0;
    double zero = 0;
};

// The scale has 25 levels for a division in one byte and 256 times as many with each byte more.
// Floats are volts and need no scale.
[[nodiscard]] VerticalScale ScaleOf(const ChannelSetup& setup, const TransferFormat& format);

// Volts to levels, held at the ends of what the width holds.
struct Digitiser {
    double levelsPerVolt = 1;
    double levelOfZero = 0;  // level of 0 V
    double low = 0;
    double high = 0;
};

[[nodiscard]] Digitiser MakeDigitiser(const ChannelSetup& setup, const TransferFormat& format);

}  // namespace virtual_scope
