#include "strokes/stroke_points.h"

#include <gtest/gtest.h>

#include <vector>

namespace strokes {
namespace {

TEST(StrokePoints, StartEmpty) {
  const StrokePoints points;

  EXPECT_TRUE(points.empty());
  EXPECT_EQ(points.size(), 0u);
  EXPECT_EQ(points.begin(), points.end());
}

TEST(StrokePoints, EmptyOnesAreEqualHoweverTheyWereMade) {
  EXPECT_EQ(StrokePoints(), StrokePoints(std::vector<StrokePoint>{}));
}

TEST(StrokePoints, KeepTheOrderInWhichTheyWereAppended) {
  StrokePoints points;

  points.append({0.1, 0.2, 3});
  points.append({0.4, 0.5, 6});

  EXPECT_EQ(points, (StrokePoints{{0.1, 0.2, 3}, {0.4, 0.5, 6}}));
  EXPECT_EQ(points.back(), (StrokePoint{0.4, 0.5, 6}));
}

TEST(StrokePoints, ACopySharesThemUntilOneOfTheTwoGrows) {
  StrokePoints points{{0, 0, 1}};
  const StrokePoints snapshot = points;
  ASSERT_TRUE(snapshot.sharesPointsWith(points));

  points.append({1, 1, 1});

  EXPECT_FALSE(snapshot.sharesPointsWith(points));
  EXPECT_EQ(snapshot, (StrokePoints{{0, 0, 1}}));
  EXPECT_EQ(points, (StrokePoints{{0, 0, 1}, {1, 1, 1}}));
}

TEST(StrokePoints, AppendingToACopyLeavesTheOriginal) {
  const StrokePoints points{{0, 0, 1}};
  StrokePoints copy = points;

  copy.append({1, 1, 1});

  EXPECT_EQ(points.size(), 1u);
}

TEST(StrokePoints, APointOfTheirOwnCanBeAppendedWhileTheyAreShared) {
  StrokePoints points{{0.5, 0.25, 7}};
  const StrokePoints snapshot = points;

  points.append(points.back());
  points.append(points[0]);

  EXPECT_EQ(points, (StrokePoints{{0.5, 0.25, 7}, {0.5, 0.25, 7}, {0.5, 0.25, 7}}));
}

}  // namespace
}  // namespace strokes
