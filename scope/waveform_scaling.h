// From the bytes of a waveform block to volts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrion {

// How the points of a block are stored.
enum class PointFormat : std::uint8_t {
    kInt8,         // signed, one byte
    kInt16Little,  // signed, two bytes, least significant byte first
    kFloatLittle,  // IEEE 754 single precision, least significant byte first
};
inline constexpr std::size_t kPointFormatCount = 3;

[[nodiscard]] constexpr std::size_t PointWidth(PointFormat format) {
    switch (format) {
        case PointFormat::kInt8:
            return 1;
        case PointFormat::kInt16Little:
            return 2;
        case PointFormat::kFloatLittle:
            break;
    }
    return 4;
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

// Scales pairs of points in one pass: the first of each goes to `first`, the second to `second`.
// Both have the same size, and `block` holds at least as many pairs.
void ScalePairsToVolts(std::span<const std::uint8_t> block, PointFormat format,
                       const VerticalScale& scale, std::span<double> first,
                       std::span<double> second);

}  // namespace kestrion
