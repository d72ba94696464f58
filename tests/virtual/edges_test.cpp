#include "virtual/edges.h"

#include <gtest/gtest.h>

#include <array>

namespace virtual_scope {
namespace {

TEST(Edges, LieOnTheLineBetweenTwoPoints) {
    const std::array points = {0.0, 1.0, 4.0, 4.0, 0.0};
    const auto edges = FindEdges(points, 2.0, 1.0);
    ASSERT_EQ(edges.size(), 2U);
    EXPECT_DOUBLE_EQ(edges[0].place, 1.0 + 1.0 / 3.0);
    EXPECT_TRUE(edges[0].rising);
    EXPECT_DOUBLE_EQ(edges[1].place, 3.5);
    EXPECT_FALSE(edges[1].rising);
}

TEST(Edges, RipplesWithinTheHysteresisAreNone) {
    const std::array points = {0.0, 2.2, 1.8, 2.2, 4.0, 3.5, 4.0};
    const auto edges = FindEdges(points, 2.0, 1.0);
    ASSERT_EQ(edges.size(), 1U);
    EXPECT_DOUBLE_EQ(edges[0].place, 2.5);  // the last of three crossings
}

TEST(Edges, AFlatLineHasNone) {
    const std::array points = {2.0, 2.0, 2.0};
    EXPECT_TRUE(FindEdges(points, 2.0, 0.5).empty());
    EXPECT_TRUE(FindEdges({}, 2.0, 0.5).empty());
}

TEST(Edges, TransitionsGoFromOneLevelToTheOther) {
    const std::array points = {0.0, 0.0, 2.0, 4.0, 4.0, 0.0};
    // 1 V is half-way between points 1 and 2, 3 V half-way between 2 and 3.
    EXPECT_DOUBLE_EQ(TransitionPoints(points, {2.0, true}, 1.0, 3.0), 1.0);
    // 3 V is a quarter, 1 V three quarters of the way from point 4 to 5.
    EXPECT_DOUBLE_EQ(TransitionPoints(points, {4.5, false}, 3.0, 1.0), 0.5);
}

TEST(Edges, ATransitionThatIsCutOffIsNone) {
    const std::array points = {1.5, 2.5, 2.8};
    EXPECT_LT(TransitionPoints(points, {0.5, true}, 1.0, 3.0), 0);
    EXPECT_LT(TransitionPoints(points, {0.5, true}, 2.0, 3.0), 0);
}

}  // namespace
}  // namespace virtual_scope
