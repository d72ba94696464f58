// The inner loops of scaling, one set for each kind of processor.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "scope/waveform_scaling.h"

namespace kestrion {

// One function for each point format, in the order of PointFormat. All sets give the same bits:
// every operation is rounded by itself, to double precision. Bytes and volts may stand at any
// address and don't overlap.
struct ScalingKernels {
    using Each = void (*)(const std::uint8_t* points, std::size_t count, const VerticalScale& scale,
                          double* volts);
    using Pairs = void (*)(const std::uint8_t* points, std::size_t pairs,
                           const VerticalScale& scale, double* first, double* second);

    std::array<Each, kPointFormatCount> each;
    std::array<Pairs, kPointFormatCount> pairs;
};

// Point by point, on any processor.
[[nodiscard]] const ScalingKernels& PortableScalingKernels();
// Several points at a time; null where this processor can't.
[[nodiscard]] const ScalingKernels* VectorScalingKernels();

}  // namespace kestrion
