#include "scope/waveform_scaling.h"

#include <bit>

namespace kestrion {
namespace {

float LittleEndianFloat(const std::uint8_t* bytes) {
    const std::uint32_t bits = std::uint32_t{bytes[0]} | (std::uint32_t{bytes[1]} << 8) |
                               (std::uint32_t{bytes[2]} << 16) | (std::uint32_t{bytes[3]} << 24);
    return std::bit_cast<float>(bits);
}

}  // namespace

void ScaleToVolts(std::span<const std::uint8_t> block, PointFormat format,
                  const VerticalScale& scale, std::span<double> volts) {
    const std::uint8_t* bytes = block.data();
    if (format == PointFormat::kInt8) {
        for (double& value : volts) {
            const auto point = static_cast<std::int8_t>(*bytes++);
            value = (static_cast<double>(point) - scale.yOffset) * scale.yMult + scale.yZero;
        }
        return;
    }
    for (double& value : volts) {
        value = double{LittleEndianFloat(bytes)} - scale.yOffset + scale.yZero;
        bytes += 4;
    }
}

}  // namespace kestrion
