// Scaling with AVX2: four points at a time. Only the functions that say so are compiled for it, so
// that nothing else of this file needs a processor that has it.
#include <immintrin.h>

#include <cstring>

#include "scope/scaling_kernels.h"

namespace kestrion {
namespace {

constexpr std::size_t kLanes = 4;

struct Scale {
    __m256d mult;
    __m256d zero;
    __m256d offset;
};

[[gnu::target("avx2")]] inline Scale Spread(const VerticalScale& scale) {
    return {_mm256_set1_pd(scale.yMult), _mm256_set1_pd(scale.yZero),
            _mm256_set1_pd(scale.yOffset)};
}

struct Int8Points {
    static constexpr PointFormat kFormat = PointFormat::kInt8;
    [[gnu::target("avx2")]] static __m256d Load(const std::uint8_t* bytes) {
        std::int32_t four = 0;
        std::memcpy(&four, bytes, sizeof four);
        return _mm256_cvtepi32_pd(_mm_cvtepi8_epi32(_mm_cvtsi32_si128(four)));
    }
    // Subtraction, product and sum by themselves: one fused operation would round differently.
    [[gnu::target("avx2")]] static __m256d Volts(__m256d points, const Scale& scale) {
        return _mm256_add_pd(_mm256_mul_pd(_mm256_sub_pd(points, scale.offset), scale.mult),
                             scale.zero);
    }
};

struct Int16Points {
    static constexpr PointFormat kFormat = PointFormat::kInt16Little;
    [[gnu::target("avx2")]] static __m256d Load(const std::uint8_t* bytes) {
        const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes));
        return _mm256_cvtepi32_pd(_mm_cvtepi16_epi32(four));
    }
    [[gnu::target("avx2")]] static __m256d Volts(__m256d points, const Scale& scale) {
        return Int8Points::Volts(points, scale);
    }
};

struct FloatPoints {
    static constexpr PointFormat kFormat = PointFormat::kFloatLittle;
    [[gnu::target("avx2")]] static __m256d Load(const std::uint8_t* bytes) {
        return _mm256_cvtps_pd(_mm_loadu_ps(reinterpret_cast<const float*>(bytes)));
    }
    [[gnu::target("avx2")]] static __m256d Volts(__m256d points, const Scale& scale) {
        return _mm256_add_pd(_mm256_sub_pd(points, scale.offset), scale.zero);
    }
};

template <typename Points>
[[gnu::target("avx2")]] void ScaleEach(const std::uint8_t* points, std::size_t count,
                                       const VerticalScale& scale, double* volts) {
    const Scale spread = Spread(scale);
    constexpr std::size_t kWidth = PointWidth(Points::kFormat);
    std::size_t done = 0;
    for (; done + kLanes <= count; done += kLanes) {
        _mm256_storeu_pd(volts + done, Points::Volts(Points::Load(points + done * kWidth), spread));
    }
    constexpr auto kIndex = static_cast<std::size_t>(Points::kFormat);
    PortableScalingKernels().each[kIndex](points + done * kWidth, count - done, scale,
                                          volts + done);
}

template <typename Points>
[[gnu::target("avx2")]] void ScalePairs(const std::uint8_t* points, std::size_t pairs,
                                        const VerticalScale& scale, double* first, double* second) {
    const Scale spread = Spread(scale);
    constexpr std::size_t kWidth = PointWidth(Points::kFormat);
    // Unpacking gives the points of a kind in the order 0 2 1 3.
    constexpr int kInOrder = 0b11'01'10'00;
    std::size_t done = 0;
    for (; done + kLanes <= pairs; done += kLanes) {
        const std::uint8_t* bytes = points + done * 2 * kWidth;
        const __m256d low = Points::Volts(Points::Load(bytes), spread);
        const __m256d high = Points::Volts(Points::Load(bytes + kLanes * kWidth), spread);
        _mm256_storeu_pd(first + done,
                         _mm256_permute4x64_pd(_mm256_unpacklo_pd(low, high), kInOrder));
        _mm256_storeu_pd(second + done,
                         _mm256_permute4x64_pd(_mm256_unpackhi_pd(low, high), kInOrder));
    }
    constexpr auto kIndex = static_cast<std::size_t>(Points::kFormat);
    PortableScalingKernels().pairs[kIndex](points + done * 2 * kWidth, pairs - done, scale,
                                           first + done, second + done);
}

}  // namespace

const ScalingKernels* VectorScalingKernels() {
    static constexpr ScalingKernels kKernels = {
        .each = {ScaleEach<Int8Points>, ScaleEach<Int16Points>, ScaleEach<FloatPoints>},
        .pairs = {ScalePairs<Int8Points>, ScalePairs<Int16Points>, ScalePairs<FloatPoints>}};
    static const bool kUsable = __builtin_cpu_supports("avx2") != 0;
    return kUsable ? &kKernels : nullptr;
}

}  // namespace kestrion
