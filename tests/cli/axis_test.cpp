#include "cli/axis.h"

#include <gmock/gmock.h>

namespace kestrion::cli {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;

std::vector<std::string> Labels(const Axis& axis) {
    std::vector<std::string> labels;
    for (double tick : axis.Ticks()) {
        labels.push_back(axis.Label(tick));
    }
    return labels;
}

TEST(Axis, StepsAreOneTwoOrFive) {
    EXPECT_EQ(Axis({0, 10}, 10).Step(), 1);
    EXPECT_EQ(Axis({0, 11}, 10).Step(), 2);
    EXPECT_EQ(Axis({0, 21}, 10).Step(), 5);
    EXPECT_EQ(Axis({0, 51}, 10).Step(), 10);
    EXPECT_DOUBLE_EQ(Axis({0, 3e-7}, 10).Step(), 5e-8);
}

TEST(Axis, TicksStandInsideTheRange) {
    EXPECT_THAT(Axis({-1.1, 1.1}, 5).Ticks(),
                ElementsAre(DoubleEq(-1), DoubleEq(-0.5), DoubleEq(0), DoubleEq(0.5), DoubleEq(1)));
}

TEST(Axis, TicksAtBothEndsOfTheRange) {
    EXPECT_THAT(Labels(Axis({-0.3, 0.3}, 6)),
                ElementsAre("-300", "-200", "-100", "0", "100", "200", "300"));
}

TEST(Axis, LabelsAreInTheUnitWithItsPrefix) {
    const Axis axis({-2e-6, 1.996e-6}, 10);
    EXPECT_EQ(axis.PrefixSymbol(), "µ");
    EXPECT_THAT(Labels(axis),
                ElementsAre("-2.0", "-1.5", "-1.0", "-0.5", "0.0", "0.5", "1.0", "1.5"));
}

TEST(Axis, LabelsHaveTheDecimalsThatTheStepNeeds) {
    EXPECT_THAT(Labels(Axis({4.99999, 5.00001}, 4)),
                ElementsAre("4.999990", "4.999995", "5.000000", "5.000005", "5.000010"));
    EXPECT_THAT(Labels(Axis({0, 4000}, 4)), ElementsAre("0", "1", "2", "3", "4"));
}

TEST(Axis, PositionRunsFromZeroToOne) {
    const Axis axis({-1, 3}, 4);
    EXPECT_EQ(axis.Position(-1), 0);
    EXPECT_EQ(axis.Position(0), 0.25);
    EXPECT_EQ(axis.Position(3), 1);
}

TEST(WithMargin, AddsEightPercentOnBothSides) {
    const Range range = WithMargin({-1, 1});
    EXPECT_DOUBLE_EQ(range.low, -1.16);
    EXPECT_DOUBLE_EQ(range.high, 1.16);
}

TEST(WithMargin, PutsAConstantInTheMiddle) {
    EXPECT_EQ(WithMargin({2.5, 2.5}).low, 1.25);
    EXPECT_EQ(WithMargin({2.5, 2.5}).high, 3.75);
    EXPECT_EQ(WithMargin({-4, -4}).low, -6);
    EXPECT_EQ(WithMargin({-4, -4}).high, -2);
    EXPECT_EQ(WithMargin({0, 0}).low, -1);
    EXPECT_EQ(WithMargin({0, 0}).high, 1);
}

TEST(WithMargin, TakesARoundingErrorForAConstant) {
    EXPECT_NEAR(WithMargin({1, 1 + 1e-15}).Span(), 1, 1e-12);
}

}  // namespace
}  // namespace kestrion::cli
