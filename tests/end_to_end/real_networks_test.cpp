#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "tests/end_to_end/meant_strokes.h"
#include "tools/replay/detector.h"
#include "tools/replay/replay.h"

namespace {

using end_to_end::MeantStroke;
using strokes::Point;
using testing::SizeIs;

/// The sample clip, painted with nothing known but its pixels. How well other people paint is
/// measured by training/evaluate_painting.
TEST(RealNetworks, PaintTheLinesOfTheSampleClipInTheirOrderColoursAndPlaces) {
  const auto frames = replay::openFrames(WAVESCRIBE_ASSETS "/sample.webm");
  ASSERT_TRUE(frames) << frames.error().description;
  const auto detector = replay::makeDetector();
  ASSERT_TRUE(detector);
  replay::Replay replay(*detector);
  replay::FullSpeed pace;
  ASSERT_TRUE(replay.play(*frames.value(), pace, nullptr));

  const auto& painted = replay.model().store().strokes();
  const std::vector<MeantStroke> meant = end_to_end::meantStrokes();
  ASSERT_THAT(painted, SizeIs(meant.size()));
  for (std::size_t i = 0; i < meant.size(); ++i) {
    const std::vector<Point> path = end_to_end::pathOf(painted[i]);
    EXPECT_EQ(painted[i].colorIndex, meant[i].color) << meant[i].name;
    EXPECT_LT(end_to_end::meanDistance(path, meant[i].points), 0.02) << meant[i].name;
    EXPECT_LT(end_to_end::meanDistance(meant[i].points, path), 0.02) << meant[i].name;
  }
}

}  // namespace
