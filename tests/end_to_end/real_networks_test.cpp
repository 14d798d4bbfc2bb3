#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

#include "tests/end_to_end/meant_strokes.h"
#include "tools/replay/detector.h"
#include "tools/replay/replay.h"

namespace {

using end_to_end::MeantStroke;
using strokes::Point;
using testing::ElementsAre;

/// The sample clip, painted with nothing known but its pixels. A look that fails may break a line
/// in two here, where the recorded hands do not: how often that happens is measured on many people
/// by training/evaluate_painting.
TEST(RealNetworks, PaintTheLinesOfTheSampleClipInTheirOrderColoursAndPlaces) {
  const auto frames = replay::openFrames(WAVESCRIBE_ASSETS "/sample.webm");
  ASSERT_TRUE(frames) << frames.error().description;
  const auto detector = replay::makeDetector();
  ASSERT_TRUE(detector);
  replay::Replay replay(*detector);
  replay::FullSpeed pace;
  ASSERT_TRUE(replay.play(*frames.value(), pace, nullptr));

  std::vector<int> colors;
  std::vector<std::vector<Point>> painted(3);  // All lines of one colour, end to end.
  for (const strokes::Stroke& stroke : replay.model().store().strokes()) {
    if (colors.empty() || colors.back() != stroke.colorIndex) colors.push_back(stroke.colorIndex);
    std::ranges::copy(end_to_end::pathOf(stroke),
                      std::back_inserter(painted.at(static_cast<std::size_t>(stroke.colorIndex))));
  }
  EXPECT_THAT(colors, ElementsAre(0, 1, 2));

  std::vector<std::vector<Point>> meant(3);
  for (const MeantStroke& stroke : end_to_end::meantStrokes()) {
    const auto color = static_cast<std::size_t>(stroke.color);
    EXPECT_LT(end_to_end::meanDistance(stroke.points, painted.at(color)), 0.02) << stroke.name;
    std::ranges::copy(stroke.points, std::back_inserter(meant.at(color)));
  }
  for (std::size_t color = 0; color < painted.size(); ++color) {
    EXPECT_LT(end_to_end::meanDistance(painted[color], meant[color]), 0.02) << color;
  }
}

}  // namespace
