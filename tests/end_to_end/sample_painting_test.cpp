#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/recorded/hand_log.h"
#include "render/canvas_renderer.h"
#include "strokes/palette.h"
#include "tests/end_to_end/meant_strokes.h"
#include "tests/support/painting_by_hand.h"

namespace {

using end_to_end::meanDistance;
using end_to_end::MeantStroke;
using end_to_end::meantStrokes;
using end_to_end::pathOf;
using strokes::Point;
using testing::SizeIs;

constexpr int kWidth = 640;
constexpr int kHeight = 360;

/// The hands of the sample clip before a running model.
class SamplePainting : public support::PaintingByHand {
 protected:
  SamplePainting() {
    const auto log = platform::readHandLog(WAVESCRIBE_ASSETS "/sample-hands.jsonl");
    for (const platform::HandLogEntry& entry : log.value()) {
      machine.clock.set(entry.time);
      machine.handPoseRequest.nextSees(entry.answer.value());
      machine.capture.deliver(support::frameOf(kWidth, kHeight, entry.time));
      settle();
      model.tick();
    }
  }

  const std::vector<MeantStroke> meant_ = meantStrokes();
};

TEST_F(SamplePainting, HasTheStrokesThatWereMeantInTheirOrderAndColours) {
  ASSERT_THAT(strokes(), SizeIs(meant_.size()));
  EXPECT_EQ(model.strokeCount(), static_cast<int>(meant_.size()));
  for (std::size_t i = 0; i < meant_.size(); ++i) {
    EXPECT_EQ(strokes()[i].colorIndex, meant_[i].color) << meant_[i].name;
  }
}

TEST_F(SamplePainting, RunsAlongTheLinesThatWereMeant) {
  ASSERT_THAT(strokes(), SizeIs(meant_.size()));
  for (std::size_t i = 0; i < meant_.size(); ++i) {
    const std::vector<Point> path = pathOf(strokes()[i]);
    EXPECT_LT(meanDistance(path, meant_[i].points), 0.02) << meant_[i].name;
    EXPECT_LT(meanDistance(meant_[i].points, path), 0.02) << meant_[i].name;
  }
}

TEST_F(SamplePainting, GrowsWiderAsThePainterComesNearer) {
  const strokes::StrokePoints& wave = strokes().back().points;
  EXPECT_GT(wave.back().w, 1.8 * wave[0].w);
  for (std::size_t i = 1; i < wave.size(); ++i) EXPECT_GT(wave[i].w, wave[i - 1].w - 0.5);
}

TEST_F(SamplePainting, ShowsEveryStrokeInItsColour) {
  model.setGlow(false);
  const auto picture = render::CanvasRenderer::makeImage(
      model.makeScene(render::CanvasBackground::black, false), {kWidth, kHeight});
  ASSERT_TRUE(picture);
  for (const strokes::Stroke& stroke : strokes()) {
    const strokes::PaletteColor& color = strokes::Palette::colorAt(stroke.colorIndex);
    const strokes::StrokePoint& middle = stroke.points[stroke.points.size() / 2];
    const std::uint8_t* pixel = picture->row(static_cast<int>(middle.y * kHeight)) +
                                4 * static_cast<std::size_t>(middle.x * kWidth);
    EXPECT_NEAR(pixel[0], 255 * color.b, 2);
    EXPECT_NEAR(pixel[1], 255 * color.g, 2);
    EXPECT_NEAR(pixel[2], 255 * color.r, 2);
  }
}

TEST_F(SamplePainting, EndsWithNoHandAndNoProblem) {
  EXPECT_EQ(model.handStatus(), "No hand");
  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.errorMessage(), std::nullopt);
}

}  // namespace
