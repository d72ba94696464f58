// The loops of scaling: all sets against the formula, bit by bit.
#include "scope/scaling_kernels.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kestrion {
namespace {

constexpr std::array kFormats = {PointFormat::kInt8, PointFormat::kInt16Little,
                                 PointFormat::kFloatLittle};

// The formula, with each intermediate result stored, so that no two operations are made one.
double Formula(const std::uint8_t* bytes, PointFormat format, const VerticalScale& scale) {
    if (format == PointFormat::kFloatLittle) {
        float point = 0.0F;
        std::memcpy(&point, bytes, sizeof point);
        volatile double value = static_cast<double>(point);
        value = value - scale.yOffset;
        value = value + scale.yZero;
        return value;
    }
    std::int16_t point = static_cast<std::int8_t>(bytes[0]);
    if (format == PointFormat::kInt16Little) {
        std::memcpy(&point, bytes, sizeof point);
    }
    volatile double value = point;
    value = value - scale.yOffset;
    value = value * scale.yMult;
    value = value + scale.yZero;
    return value;
}

struct NamedKernels {
    std::string name;
    const ScalingKernels* kernels;
};

// The vector set is among them on processors that have it; the tests say which ran by their traces.
std::vector<NamedKernels> AllKernels() {
    std::vector<NamedKernels> all = {{"portable", &PortableScalingKernels()}};
    if (const ScalingKernels* vector = VectorScalingKernels(); vector != nullptr) {
        all.push_back({"vector", vector});
    }
    return all;
}

// Bytes that begin at an address with this remainder, so that loads meet every alignment.
class Block {
  public:
    Block(const std::vector<std::uint8_t>& bytes, std::size_t shift)
        : room_(bytes.size() + shift + 1), shift_(shift) {
        std::copy(bytes.begin(), bytes.end(), room_.begin() + static_cast<std::ptrdiff_t>(shift));
    }
    [[nodiscard]] const std::uint8_t* Bytes() const { return room_.data() + shift_; }

  private:
    std::vector<std::uint8_t> room_;
    std::size_t shift_;
};

constexpr double kUntouched = 12345.0;

void ExpectEach(const std::uint8_t* bytes, std::size_t count, PointFormat format,
                const VerticalScale& scale) {
    for (const auto& [name, kernels] : AllKernels()) {
        std::vector<double> volts(count + 1, kUntouched);
        kernels->each[static_cast<std::size_t>(format)](bytes, count, scale, volts.data());
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(volts[i]),
                      std::bit_cast<std::uint64_t>(
                          Formula(bytes + i * PointWidth(format), format, scale)))
                << name << ", point " << i << " of " << count;
        }
        ASSERT_EQ(volts[count], kUntouched) << name;
    }
}

void ExpectPairs(const std::uint8_t* bytes, std::size_t pairs, PointFormat format,
                 const VerticalScale& scale) {
    for (const auto& [name, kernels] : AllKernels()) {
        std::vector<double> first(pairs + 1, kUntouched);
        std::vector<double> second(pairs + 1, kUntouched);
        kernels->pairs[static_cast<std::size_t>(format)](bytes, pairs, scale, first.data(),
                                                         second.data());
        for (std::size_t i = 0; i < pairs; ++i) {
            const std::uint8_t* pair = bytes + 2 * i * PointWidth(format);
            ASSERT_EQ(std::bit_cast<std::uint64_t>(first[i]),
                      std::bit_cast<std::uint64_t>(Formula(pair, format, scale)))
                << name << ", pair " << i << " of " << pairs;
            ASSERT_EQ(
                std::bit_cast<std::uint64_t>(second[i]),
                std::bit_cast<std::uint64_t>(Formula(pair + PointWidth(format), format, scale)))
                << name << ", pair " << i << " of " << pairs;
        }
        ASSERT_EQ(first[pairs], kUntouched) << name;
        ASSERT_EQ(second[pairs], kUntouched) << name;
    }
}

// Factors over the whole range of exponents, denormals and the odd ones among them.
VerticalScale RandomScale(std::mt19937_64& random) {
    const auto factor = [&random]() -> double {
        const double fraction = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
        switch (random() % 8) {
            case 0:
                return std::ldexp(fraction, -1040);
            case 1:
                return std::numeric_limits<double>::denorm_min();
            case 2:
                return std::ldexp(fraction, 1000);
            case 3:
                return -0.0;
            default:
                return std::ldexp(fraction, static_cast<int>(random() % 60) - 40);
        }
    };
    return {.yMult = factor(), .yZero = factor(), .yOffset = factor()};
}

std::vector<std::uint8_t> RandomBytes(std::mt19937_64& random, std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

TEST(ScalingKernels, EveryByteValueWithRandomScales) {
    std::vector<std::uint8_t> bytes;
    for (int value = 0; value < 256; ++value) {
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    std::mt19937_64 random(1);
    for (int round = 0; round < 200; ++round) {
        const VerticalScale scale = RandomScale(random);
        ExpectEach(bytes.data(), bytes.size(), PointFormat::kInt8, scale);
        ExpectPairs(bytes.data(), bytes.size() / 2, PointFormat::kInt8, scale);
    }
}

TEST(ScalingKernels, EveryTwoByteValue) {
    std::vector<std::uint8_t> bytes;
    for (int value = 0; value < 65536; ++value) {
        bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    const VerticalScale scale = {.yMult = 0.1, .yZero = -0.3, .yOffset = 17.7};
    ExpectEach(bytes.data(), 65536, PointFormat::kInt16Little, scale);
    ExpectPairs(bytes.data(), 32768, PointFormat::kInt16Little, scale);
}

TEST(ScalingKernels, EveryLengthAtEveryAlignment) {
    std::mt19937_64 random(2);
    const VerticalScale scale = {.yMult = 1.0 / 3.0, .yZero = 0.7, .yOffset = -11.3};
    for (std::size_t shift = 0; shift < 9; ++shift) {
        for (std::size_t count = 0; count < 38; ++count) {
            const Block block(RandomBytes(random, 8 * count), shift);
            for (const PointFormat format : {PointFormat::kInt8, PointFormat::kInt16Little}) {
                ExpectEach(block.Bytes(), count, format, scale);
                ExpectPairs(block.Bytes(), count, format, scale);
            }
        }
    }
}

TEST(ScalingKernels, FloatingPointPointsOfEveryKind) {
    const std::vector<float> points = {0.0F,
                                       -0.0F,
                                       1.5F,
                                       -2.0F,
                                       std::numeric_limits<float>::denorm_min(),
                                       -1.0e-40F,
                                       std::numeric_limits<float>::min(),
                                       std::numeric_limits<float>::max(),
                                       std::numeric_limits<float>::lowest(),
                                       std::numeric_limits<float>::infinity(),
                                       -std::numeric_limits<float>::infinity(),
                                       std::numeric_limits<float>::quiet_NaN(),
                                       std::bit_cast<float>(0x7FA12345U),
                                       9.91e37F};
    std::vector<std::uint8_t> bytes(points.size() * 4);
    std::memcpy(bytes.data(), points.data(), bytes.size());
    std::mt19937_64 random(3);
    for (int round = 0; round < 200; ++round) {
        const VerticalScale scale = RandomScale(random);
        const Block block(bytes, static_cast<std::size_t>(round % 7));
        ExpectEach(block.Bytes(), points.size(), PointFormat::kFloatLittle, scale);
        ExpectPairs(block.Bytes(), points.size() / 2, PointFormat::kFloatLittle, scale);
    }
}

TEST(ScalingKernels, RandomBlocksWithRandomScales) {
    std::mt19937_64 random(4);
    for (int round = 0; round < 300; ++round) {
        const VerticalScale scale = RandomScale(random);
        const Block block(RandomBytes(random, 4 * 67), static_cast<std::size_t>(round % 5));
        for (const PointFormat format : kFormats) {
            ExpectEach(block.Bytes(), 67, format, scale);
            ExpectPairs(block.Bytes(), 33, format, scale);
        }
    }
}

// (3 - 0) * 0.1 + -0.3 is 5.55e-17 when the product is rounded first, as it has to be, and 2.78e-17
// when it isn't.
TEST(ScalingKernels, ProductAndSumAreNotFused) {
    const std::array<std::uint8_t, 8> bytes = {3, 3, 3, 3, 3, 3, 3, 3};
    const VerticalScale scale = {.yMult = 0.1, .yZero = -0.3, .yOffset = 0.0};
    for (const auto& [name, kernels] : AllKernels()) {
        std::array<double, 8> volts{};
        kernels->each[0](bytes.data(), volts.size(), scale, volts.data());
        for (const double value : volts) {
            EXPECT_EQ(value, 0x1p-54) << name;
        }
    }
}

}  // namespace
}  // namespace kestrion
