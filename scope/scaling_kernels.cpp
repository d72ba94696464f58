#include "scope/scaling_kernels.h"

#include <bit>

namespace kestrion {
namespace {

struct Int8Points {
    static constexpr std::size_t kWidth = 1;
    static double At(const std::uint8_t* bytes) {
        return static_cast<double>(static_cast<std::int8_t>(bytes[0]));
    }
    static double Volts(double point, const VerticalScale& scale) {
        return (point - scale.yOffset) * scale.yMult + scale.yZero;
    }
};

struct Int16Points {
    static constexpr std::size_t kWidth = 2;
    static double At(const std::uint8_t* bytes) {
        return static_cast<double>(static_cast<std::int16_t>(bytes[0] | (bytes[1] << 8)));
    }
    static double Volts(double point, const VerticalScale& scale) {
        return Int8Points::Volts(point, scale);
    }
};

struct FloatPoints {
    static constexpr std::size_t kWidth = 4;
    static double At(const std::uint8_t* bytes) {
        const std::uint32_t bits = std::uint32_t{bytes[0]} | (std::uint32_t{bytes[1]} << 8) |
                                   (std::uint32_t{bytes[2]} << 16) |
                                   (std::uint32_t{bytes[3]} << 24);
        return double{std::bit_cast<float>(bits)};
    }
    static double Volts(double point, const VerticalScale& scale) {
        return point - scale.yOffset + scale.yZero;
    }
};

template <typename Points>
void ScaleEach(const std::uint8_t* points, std::size_t count, const VerticalScale& scale,
               double* volts) {
    // A copy: the result can't change it, so that it needn't be loaded for each point.
    const VerticalScale held = scale;
    for (std::size_t i = 0; i < count; ++i) {
        volts[i] = Points::Volts(Points::At(points + i * Points::kWidth), held);
    }
}

template <typename Points>
void ScalePairs(const std::uint8_t* points, std::size_t pairs, const VerticalScale& scale,
                double* first, double* second) {
    const VerticalScale held = scale;
    for (std::size_t i = 0; i < pairs; ++i) {
        const std::uint8_t* pair = points + i * 2 * Points::kWidth;
        first[i] = Points::Volts(Points::At(pair), held);
        second[i] = Points::Volts(Points::At(pair + Points::kWidth), held);
    }
}

}  // namespace

const ScalingKernels& PortableScalingKernels() {
    static constexpr ScalingKernels kKernels = {
        .each = {ScaleEach<Int8Points>, ScaleEach<Int16Points>, ScaleEach<FloatPoints>},
        .pairs = {ScalePairs<Int8Points>, ScalePairs<Int16Points>, ScalePairs<FloatPoints>}};
    return kKernels;
}

}  // namespace kestrion
