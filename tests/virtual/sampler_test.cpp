#include "virtual/sampler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace virtual_scope {
namespace {

constexpr auto kBlock = static_cast<std::int64_t>(kBlockPoints);

std::vector<double> Points(const Sampler& sampler, std::int64_t block) {
    std::vector<double> volts(kBlockPoints);
    sampler.Sample(block * kBlock, volts);
    return volts;
}

TEST(Sine, IsTheExactFormulaEverywhereInARecord) {
    for (const double interval : {4e-11, 4e-7, 1e-3, 0.3}) {
        const TimeAxis axis = {.zero = 1.5e-4, .trigger = 50'000'000, .interval = interval};
        const SineSampler sine(axis, 1000, 1.0);
        for (const std::int64_t block : {0, 1, 777, 97'656, 195'311}) {
            const auto volts = Points(sine, block);
            for (std::size_t i = 0; i < volts.size(); i += 37) {
                const auto n = block * kBlock + static_cast<std::int64_t>(i) - 50'000'000;
                const long double turns =
                    1000.0L * (1.5e-4L + static_cast<long double>(n) * interval);
                const long double exact =
                    std::sin(2 * std::numbers::pi_v<long double> * (turns - std::floor(turns)));
                ASSERT_NEAR(volts[i], static_cast<double>(exact), 1e-4) << n << " * " << interval;
            }
        }
    }
}

TEST(Sine, RisesThroughZeroAtTheTrigger) {
    const SineSampler sine({.zero = 0, .trigger = 500, .interval = 4e-6}, 1000, 1.0);
    const auto volts = Points(sine, 0);
    EXPECT_NEAR(volts[500], 0, 1e-12);
    EXPECT_NEAR(volts[499], -std::sin(0.0251327412287183), 1e-12);  // 2 pi 1 kHz 4 us
    EXPECT_NEAR(volts[501], std::sin(0.0251327412287183), 1e-12);
}

TEST(Square, IsHighInTheFirstHalfOfEachPeriod) {
    // 10 kHz in steps of 10 us: five points high, five low, an edge at every fifth.
    const SquareSampler square({.zero = 0, .trigger = 100, .interval = 1e-5}, 10e3, 0, 3.3);
    const auto volts = Points(square, 0);
    for (std::size_t i = 0; i < volts.size(); ++i) {
        EXPECT_EQ(volts[i], i / 5 % 2 == 0 ? 3.3 : 0.0) << i;
    }
}

TEST(Square, EdgesStayInPlaceInALongRecord) {
    const SquareSampler square({.zero = 0, .trigger = 50'000'000, .interval = 4e-11}, 10e3, 0, 3.3);
    // Half a period is 1,250,000 points.
    for (const std::int64_t edge : {50'000'000, 51'250'000, 98'750'000, 1'250'000}) {
        const bool rises = (edge - 50'000'000) / 1'250'000 % 2 == 0;
        const auto before =
            Points(square, (edge - 1) / kBlock)[static_cast<std::size_t>((edge - 1) % kBlock)];
        const auto after = Points(square, edge / kBlock)[static_cast<std::size_t>(edge % kBlock)];
        EXPECT_EQ(before, rises ? 0.0 : 3.3) << edge;
        EXPECT_EQ(after, rises ? 3.3 : 0.0) << edge;
    }
}

TEST(Serial, FramesAreEightBitsWithoutParity) {
    // 'K' is 0x4B: start, 1 1 0 1 0 0 1 0, stop; then ten bits of pause.
    EXPECT_EQ(
        SerialSampler::LineBits("K"),
        (std::vector<std::uint8_t>{0, 1, 1, 0, 1, 0, 0, 1, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
}

TEST(Serial, TheFirstStartBitBeginsAtTheTrigger) {
    // Four points for a bit.
    const SerialSampler serial({.zero = 0, .trigger = 100, .interval = 1.0 / 9600 / 4}, 9600, "K",
                               0, 3.3);
    const auto volts = Points(serial, 0);
    EXPECT_EQ(volts[99], 3.3);  // the pause before
    EXPECT_EQ(volts[100], 0.0);
    EXPECT_EQ(volts[103], 0.0);
    EXPECT_EQ(volts[104], 3.3);  // bit 0
    EXPECT_EQ(volts[111], 3.3);  // bit 1
    EXPECT_EQ(volts[112], 0.0);  // bit 2
    EXPECT_EQ(volts[136], 3.3);  // stop
    EXPECT_EQ(volts[179], 3.3);
    EXPECT_EQ(volts[180], 0.0);  // the next round
}

TEST(Noise, DependsOnPointAndAcquisitionOnly) {
    const NoiseSampler one(1, 0.2);
    EXPECT_EQ(Points(one, 3), Points(NoiseSampler(1, 0.2), 3));
    EXPECT_NE(Points(one, 3), Points(NoiseSampler(2, 0.2), 3));
    EXPECT_NE(Points(one, 3), Points(one, 4));
}

TEST(Noise, StaysWithinItsAmplitudeAroundZero) {
    double sum = 0;
    double peak = 0;
    for (std::int64_t block = 0; block < 100; ++block) {
        for (const double volts : Points(NoiseSampler(1, 0.2), block)) {
            sum += volts;
            peak = std::max(peak, std::abs(volts));
        }
    }
    EXPECT_LE(peak, 0.2);
    EXPECT_GE(peak, 0.15);
    EXPECT_NEAR(sum / 51'200, 0, 0.002);
}

TEST(Operation, GoesPointByPoint) {
    const struct {
        char operation;
        double expected;
    } kCases[] = {{'+', 4.5}, {'-', -2.5}, {'*', 3.5}, {'/', 2.0 / 7.0}};
    for (const auto& [operation, expected] : kCases) {
        const OperationSampler sampler(operation, std::make_unique<ConstantSampler>(1.0),
                                       std::make_unique<ConstantSampler>(3.5));
        for (const double volts : Points(sampler, 0)) {
            EXPECT_EQ(volts, expected) << operation;
        }
    }
}

TEST(Operation, AQuotientOfNothingIsNothing) {
    const OperationSampler sampler('/', std::make_unique<ConstantSampler>(1.0),
                                   std::make_unique<ConstantSampler>(0.0));
    for (const double volts : Points(sampler, 0)) {
        EXPECT_EQ(volts, 0.0);
    }
}

}  // namespace
}  // namespace virtual_scope
