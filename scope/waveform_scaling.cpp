#include "scope/waveform_scaling.h"

#include "scope/scaling_kernels.h"

namespace kestrion {
namespace {

const ScalingKernels& BestKernels() {
    const ScalingKernels* vector = VectorScalingKernels();
    return vector != nullptr ? *vector : PortableScalingKernels();
}

}  // namespace

void ScaleToVolts(std::span<const std::uint8_t> block, PointFormat format,
                  const VerticalScale& scale, std::span<double> volts) {
    BestKernels().each[static_cast<std::size_t>(format)](block.data(), volts.size(), scale,
                                                         volts.data());
}

void ScalePairsToVolts(std::span<const std::uint8_t> block, PointFormat format,
                       const VerticalScale& scale, std::span<double> first,
                       std::span<double> second) {
    BestKernels().pairs[static_cast<std::size_t>(format)](block.data(), first.size(), scale,
                                                          first.data(), second.data());
}

}  // namespace kestrion
