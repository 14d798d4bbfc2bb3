#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/recorded/hand_log.h"
#include "render/canvas_renderer.h"
#include "strokes/palette.h"
#include "tests/support/painting_by_hand.h"

namespace {

using strokes::Point;
using testing::SizeIs;

constexpr int kWidth = 640;
constexpr int kHeight = 360;
constexpr double kAspect = static_cast<double>(kWidth) / kHeight;

/// A line that the painter of the sample clip meant.
struct MeantStroke {
  std::string name;
  int color = 0;
  std::vector<Point> points;
};

std::vector<MeantStroke> meantStrokes() {
  std::ifstream file(WAVESCRIBE_ASSETS "/sample-path.json");
  const nlohmann::json path = nlohmann::json::parse(file);
  std::vector<MeantStroke> meant;
  for (const auto& json : path.at("strokes")) {
    meant.push_back({json.at("name"), json.at("color"), {}});
    for (const auto& point : json.at("points")) {
      meant.back().points.push_back({point.at(0), point.at(1)});
    }
  }
  return meant;
}

/// In canvas heights.
double distanceToSide(Point p, Point a, Point b) {
  const double px = (p.x - a.x) * kAspect;
  const double py = p.y - a.y;
  const double sx = (b.x - a.x) * kAspect;
  const double sy = b.y - a.y;
  const double length2 = sx * sx + sy * sy;
  const double t = length2 > 0 ? std::clamp((px * sx + py * sy) / length2, 0.0, 1.0) : 0;
  return std::hypot(px - t * sx, py - t * sy);
}

/// How far the points of one line lie from another line on average, in canvas heights.
double meanDistance(const std::vector<Point>& points, const std::vector<Point>& line) {
  double sum = 0;
  for (const Point& point : points) {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i) {
      nearest = std::min(nearest, distanceToSide(point, line[i - 1], line[i]));
    }
    sum += nearest;
  }
  return sum / static_cast<double>(points.size());
}

std::vector<Point> pathOf(const strokes::Stroke& stroke) {
  std::vector<Point> path;
  for (const strokes::StrokePoint& point : stroke.points) path.push_back({point.x, point.y});
  return path;
}

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
