#include "cli/statistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace kestrion::cli {
namespace {

TEST(Statistics, LevelsOfAKnownSequence) {
    const std::vector<double> values{1, -2, 4, 5};
    const Statistics result = Describe(values, 1);
    EXPECT_EQ(result.points, 4U);
    EXPECT_EQ(result.minimum, -2);
    EXPECT_EQ(result.maximum, 5);
    EXPECT_EQ(result.mean, 2);
}

TEST(Statistics, EmptyRecord) {
    const Statistics result = Describe({}, 1);
    EXPECT_EQ(result.points, 0U);
    EXPECT_EQ(result.mean, 0);
    EXPECT_FALSE(result.frequency.has_value());
}

TEST(Statistics, FrequencyOfAPeriodOfFourPoints) {
    const std::vector<double> values{0, 1, 0, -1, 0, 1, 0, -1, 0, 1, 0, -1, 0, 1};
    EXPECT_EQ(Describe(values, 0.25).frequency, 1.0);
    EXPECT_EQ(Describe(values, 1e-3).frequency, 250.0);
}

TEST(Statistics, CrossingsAreInterpolatedBetweenPoints) {
    // Up from -1 to 3 in one step: the middle, 1, is crossed half way from point 0 to point 1, and
    // then from point 3 to point 4. So the period is three points.
    const std::vector<double> values{-1, 3, -1, -1, 3, -1};
    EXPECT_EQ(Describe(values, 1).frequency, 1.0 / 3);
    // The second edge takes a step more: 0.5 and 3 + 0.8/0.9.
    const std::vector<double> slanted{-1, 3, -1, 0.2, 1.1, 3, -1};
    ASSERT_TRUE(Describe(slanted, 1).frequency.has_value());
    EXPECT_DOUBLE_EQ(*Describe(slanted, 1).frequency, 1 / (3 + 0.8 / 0.9 - 0.5));
}

TEST(Statistics, FrequencyOfASineBetweenPoints) {
    std::vector<double> values(10000);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = std::sin(2 * std::numbers::pi * 1234.5 * 1e-6 * static_cast<double>(i));
    }
    const Statistics result = Describe(values, 1e-6);
    ASSERT_TRUE(result.frequency.has_value());
    EXPECT_NEAR(*result.frequency, 1234.5, 0.01);
}

TEST(Statistics, NoiseOnAnEdgeCountsOnce) {
    // Height 10, middle 5: only excursions below 4 and above 6 count.
    const std::vector<double> values{0,   4.5, 5.5, 4.5, 5.5, 10,  5.5,
                                     4.5, 0,   4.9, 5.1, 4.9, 5.1, 10};
    // The last crossing of the first edge lies at 3.5 and that of the second at 11.5.
    ASSERT_TRUE(Describe(values, 1).frequency.has_value());
    EXPECT_DOUBLE_EQ(*Describe(values, 1).frequency, 1 / 8.0);
}

TEST(Statistics, NoFrequencyWithoutTwoRisingCrossings) {
    EXPECT_FALSE(Describe(std::vector<double>{2, 2, 2, 2}, 1).frequency.has_value());
    EXPECT_FALSE(Describe(std::vector<double>{0, 1}, 1).frequency.has_value());
    EXPECT_FALSE(Describe(std::vector<double>{0, 1, 0}, 1).frequency.has_value());
    // A record that starts high has its first rising crossing after the first fall.
    EXPECT_FALSE(Describe(std::vector<double>{1, 0, 1}, 1).frequency.has_value());
}

TEST(Statistics, NoFrequencyWithoutATimeBase) {
    const std::vector<double> values{0, 1, 0, 1, 0, 1};
    EXPECT_FALSE(Describe(values, 0).frequency.has_value());
    EXPECT_FALSE(Describe(values, std::numeric_limits<double>::quiet_NaN()).frequency.has_value());
}

TEST(Statistics, TheMeanOfALongRecordKeepsItsDigits) {
    const std::vector<double> values(1000003, 0.1);
    EXPECT_DOUBLE_EQ(Describe(values, 1).mean, 0.1);
}

}  // namespace
}  // namespace kestrion::cli
