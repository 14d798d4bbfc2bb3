#include "strokes/stroke_model.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace strokes {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(StrokeModel, NoPointsGiveNoSegments) {
  EXPECT_THAT(StrokeModel::segments({}), IsEmpty());
}

TEST(StrokeModel, OnePointGivesADotOfItsWidth) {
  EXPECT_THAT(StrokeModel::segments({{0.3, 0.7, 9}}),
              ElementsAre(StrokeSegment{{0.3, 0.7}, {0.3, 0.7}, {0.3, 0.7}, 9}));
}

TEST(StrokeModel, TwoPointsGiveTwoHalvesOfTheMeanWidth) {
  EXPECT_THAT(StrokeModel::segments({{0, 0, 2}, {1, 0.5, 6}}),
              ElementsAre(StrokeSegment{{0, 0}, {0.5, 0.25}, {0.5, 0.25}, 4},
                          StrokeSegment{{0.5, 0.25}, {1, 0.5}, {1, 0.5}, 4}));
}

TEST(StrokeModel, AnInnerPointBendsASegmentOfItsOwnWidth) {
  EXPECT_THAT(StrokeModel::segments({{0, 0, 2}, {0.5, 0, 4}, {1, 0, 6}}),
              ElementsAre(StrokeSegment{{0, 0}, {0.25, 0}, {0.25, 0}, 3},
                          StrokeSegment{{0.25, 0}, {0.5, 0}, {0.75, 0}, 4},
                          StrokeSegment{{0.75, 0}, {1, 0}, {1, 0}, 5}));
}

TEST(StrokeModel, GivesAsManySegmentsAsPointsEachStartingWhereTheOneBeforeEnds) {
  StrokePoints points{{0.1, 0.1, 3}};
  for (std::size_t n = 2; n < 60; ++n) {
    const double t = static_cast<double>(n);
    points.append({0.5 + 0.4 * std::sin(t * 1.7), 0.5 + 0.4 * std::cos(t * 2.3), 2 + t / 7});

    const std::vector<StrokeSegment> segments = StrokeModel::segments(points);

    ASSERT_EQ(segments.size(), n);
    for (std::size_t i = 0; i + 1 < n; ++i) EXPECT_EQ(segments[i].end, segments[i + 1].start);
  }
}

}  // namespace
}  // namespace strokes
