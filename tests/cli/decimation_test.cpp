#include "cli/decimation.h"

#include <gmock/gmock.h>

#include <numeric>

namespace kestrion::cli {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

TEST(PointsToDraw, AShortRecordComesWhole) {
    EXPECT_THAT(PointsToDraw(std::vector<double>{3, 1, 2}, 1), ElementsAre(0, 1, 2));
    EXPECT_THAT(PointsToDraw({}, 10), ElementsAre());
}

TEST(PointsToDraw, EachColumnGivesItsFirstLowestHighestAndLastPoint) {
    // Two columns of six points.
    const std::vector<double> values{5, 9, 6, 1, 7, 8, 0, 0, 0, 0, 0, 0};
    EXPECT_THAT(PointsToDraw(values, 2), ElementsAre(0, 1, 3, 5, 6, 11));
}

TEST(PointsToDraw, ASpikeOfOnePointSurvives) {
    std::vector<double> values(100000, 0.0);
    values[33333] = 4;
    values[70001] = -3;
    values[99999] = 1;
    const std::vector<std::size_t> points = PointsToDraw(values, 800);
    EXPECT_THAT(points, Contains(33333));
    EXPECT_THAT(points, Contains(70001));
    EXPECT_THAT(points, Contains(99999));
    EXPECT_LE(points.size(), 3200U);
    EXPECT_TRUE(std::is_sorted(points.begin(), points.end()));
}

TEST(PointsToDraw, ColumnsCoverTheWholeRecordWithoutARemainder) {
    // 13 points in 3 columns: 0 to 3, 4 to 7 and 8 to 12, each rising.
    std::vector<double> values(13);
    std::iota(values.begin(), values.end(), 0.0);
    EXPECT_THAT(PointsToDraw(values, 3), ElementsAre(0, 3, 4, 7, 8, 12));
}

TEST(ColumnExtremes, GivesLowestAndHighestOfEachColumn) {
    const std::vector<double> values{1, 5, -2, 0, 7, 7};
    const std::vector<Extremes> columns = ColumnExtremes(values, 2);
    ASSERT_EQ(columns.size(), 2U);
    EXPECT_EQ(columns[0].low, -2);
    EXPECT_EQ(columns[0].high, 5);
    EXPECT_EQ(columns[1].low, 0);
    EXPECT_EQ(columns[1].high, 7);
}

TEST(ColumnExtremes, HasNoMoreColumnsThanPoints) {
    EXPECT_EQ(ColumnExtremes(std::vector<double>{1, 2}, 80).size(), 2U);
    EXPECT_TRUE(ColumnExtremes({}, 80).empty());
}

}  // namespace
}  // namespace kestrion::cli
