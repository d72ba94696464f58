// From the bytes of a waveform block to volts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrion {

// How the points of a block are stored.
enum class PointFormat : std::uint8_t {
    kInt8,         // signed, one byte
    kFloatLittle,  // IEEE 754 single precision, least significant byte first
};

[[nodiscard]] constexpr std::size_t PointWidth(PointFormat format) {
    return format == PointFormat::kInt8 ? 1 : 4;
}

// The preamble's scale. Integer points: volts = (point - yOffset) * yMult + yZero.
// Floating-point points are in volts already: volts = point - yOffset + yZero.
struct VerticalScale {
    double yMult = 0.0;
    double yZero = 0.0;
    double yOffset = 0.0;
};

// Scales the first `volts.size()` points of `block`, in one pass. `block` holds at least as many.
void ScaleToVolts(std::span<const std::uint8_t> block, PointFormat format,
                  const VerticalScale& scale, std::span<double> volts);

}  // namespace kestrion
