#include "scope/waveform_scaling.h"

#include <gmock/gmock.h>

#include <array>

namespace kestrion {
namespace {

using testing::ElementsAre;

TEST(WaveformScaling, IntegerPointsAreSigned) {
    const std::array<std::uint8_t, 5> block = {0x00, 0x7F, 0x80, 0xFF, 0x0A};
    std::array<double, 4> volts{};
    ScaleToVolts(block, PointFormat::kInt8, {.yMult = 0.5, .yZero = 1.0, .yOffset = -2.0}, volts);
    // (0 + 2) / 2 + 1, (127 + 2) / 2 + 1, (-128 + 2) / 2 + 1, (-1 + 2) / 2 + 1
    EXPECT_THAT(volts, ElementsAre(2.0, 65.5, -62.0, 1.5));
}

TEST(WaveformScaling, FloatingPointPointsAreVoltsAlready) {
    // 1.0 is 3F800000, -0.5 is BF000000.
    const std::array<std::uint8_t, 8> block = {0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x00, 0xBF};
    std::array<double, 2> volts{};
    ScaleToVolts(block, PointFormat::kFloatLittle, {.yMult = 100.0, .yZero = 0.25, .yOffset = 0.5},
                 volts);
    EXPECT_THAT(volts, ElementsAre(0.75, -0.75));
}

TEST(WaveformScaling, TwoBytePointsAreSignedAndBeginWithTheLowByte) {
    const std::array<std::uint8_t, 6> block = {0x01, 0x02, 0xFE, 0xFF, 0x00, 0x80};
    std::array<double, 3> volts{};
    ScaleToVolts(block, PointFormat::kInt16Little, {.yMult = 0.5, .yZero = 1.0, .yOffset = 1.0},
                 volts);
    // (513 - 1) / 2 + 1, (-2 - 1) / 2 + 1, (-32768 - 1) / 2 + 1
    EXPECT_THAT(volts, ElementsAre(257.0, -0.5, -16383.5));
}

TEST(WaveformScaling, PairsAreTakenApart) {
    const std::array<std::uint8_t, 11> block = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 99};
    std::array<double, 5> first{};
    std::array<double, 5> second{};
    ScalePairsToVolts(block, PointFormat::kInt8, {.yMult = 2.0, .yZero = 0.5, .yOffset = 0.0},
                      first, second);
    EXPECT_THAT(first, ElementsAre(2.5, 6.5, 10.5, 14.5, 18.5));
    EXPECT_THAT(second, ElementsAre(4.5, 8.5, 12.5, 16.5, 20.5));
}

TEST(WaveformScaling, NothingIsReadForNoPoints) {
    ScaleToVolts({}, PointFormat::kInt8, {}, {});
    ScalePairsToVolts({}, PointFormat::kFloatLittle, {}, {}, {});
}

}  // namespace
}  // namespace kestrion
