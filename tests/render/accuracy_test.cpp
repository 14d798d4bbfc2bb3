#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "reference_painter.h"
#include "render/canvas_renderer.h"

namespace render {
namespace {

constexpr double kAspect = 1.6;
constexpr int kShownUnits = 150;

/// A stroke given in units of a canvas 800 pixels high, near its top left corner.
strokes::Stroke strokeInUnits(std::vector<strokes::StrokePoint> points, int color = 0) {
  for (auto& p : points) {
    p.x /= 800 * kAspect;
    p.y /= 800;
  }
  return {{}, strokes::StrokePoints(std::move(points)), color, 0};
}

strokes::Stroke loop(double width) {
  std::vector<strokes::StrokePoint> points;
  for (int i = 0; i <= 40; ++i) {
    const double t = i / 40.0 * 7.6;
    points.push_back({75 + (20 + 5 * t) * std::cos(t), 70 + 38 * std::sin(t), width + 2 * t});
  }
  return strokeInUnits(points, 1);
}

/// As a hand draws: many points close together, bends, and a width that changes from one to the
/// next.
strokes::Stroke written() {
  std::vector<strokes::StrokePoint> points;
  for (int i = 0; i <= 90; ++i) {
    const double t = i / 90.0;
    points.push_back({15 + 115 * t + 3 * std::sin(31 * t), 75 + 45 * std::sin(9 * t + 2 * t * t),
                      11 + 3 * std::sin(5 * t)});
  }
  return strokeInUnits(points, 4);
}

struct Case {
  std::string name;
  strokes::Stroke stroke;
  bool glow = true;
};

std::vector<Case> cases() {
  return {
      {"straight", strokeInUnits({{30.3, 41.2, 20}, {80, 90, 20}, {121, 112.7, 20}})},
      {"thin", strokeInUnits({{30.3, 41.2, 4}, {80, 90, 4}, {121, 112.7, 4}}, 2)},
      {"loop", loop(12)},
      {"dot", strokeInUnits({{70.2, 75.9, 24}}, 7)},
      {"smallDot", strokeInUnits({{70.2, 75.9, 5}}, 7)},
      {"leaving", strokeInUnits({{-60, 100, 16}, {20, 60, 16}, {60, -10, 16}, {90, -50, 16}}, 3)},
      {"zigzag", strokeInUnits({{20, 20, 8}, {120, 60, 14}, {30, 90, 10}, {110, 130, 18}}, 5)},
      {"written", written()},
      {"plainStraight", strokeInUnits({{30.3, 41.2, 20}, {121, 112.7, 20}}), false},
      {"plainThin", strokeInUnits({{30.3, 41.2, 2}, {121, 112.7, 4}}), false},
      {"plainLoop", loop(12), false},
      {"plainWritten", written(), false},
      {"plainDot", strokeInUnits({{70.2, 75.9, 9}}), false},
  };
}

void PrintTo(const Case& c, std::ostream* out) {
  *out << c.name;
}

class Accuracy : public testing::TestWithParam<std::tuple<Case, int>> {};

/// The largest difference to a neighbouring pixel, per channel.
double contrastAt(const ReferencePicture& picture, int x, int y, double ReferencePixel::*channel) {
  double most = 0;
  for (int ny = std::max(y - 1, 0); ny <= std::min(y + 1, picture.height - 1); ++ny) {
    for (int nx = std::max(x - 1, 0); nx <= std::min(x + 1, picture.width - 1); ++nx)
      most = std::max(most, std::abs(picture.at(nx, ny).*channel - picture.at(x, y).*channel));
  }
  return most;
}

TEST_P(Accuracy, NoPixelIsMoreThanTwoLevelsFromTheExactPicture) {
  const auto& [c, canvasHeight] = GetParam();
  const double canvasWidth = canvasHeight * kAspect;
  const int side = kShownUnits * canvasHeight / 800;
  const auto exact = referencePicture(c.stroke, c.glow, canvasWidth, canvasHeight, side, side);
  RenderScene scene;
  scene.background = CanvasBackground::transparent;
  scene.glow = c.glow;
  scene.strokes = {c.stroke};
  pixels::Surface drawn(side, side);

  CanvasRenderer::render(scene, {drawn.view(), 1},
                         {canvasWidth, static_cast<double>(canvasHeight)});

  double worst = 0, worstEdge = 0;
  int worstX = 0, worstY = 0, edgeX = 0, edgeY = 0;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      const ReferencePixel& e = exact.at(x, y);
      const std::uint8_t* p = drawn.row(y) + 4 * x;
      const double channels[] = {e.b, e.g, e.r, e.a};
      double ReferencePixel::*const members[] = {&ReferencePixel::b, &ReferencePixel::g,
                                                 &ReferencePixel::r, &ReferencePixel::a};
      for (int i = 0; i < 4; ++i) {
        const double off = std::abs(p[i] - channels[i]);
        if (!e.isEdge && off > worst) worst = off, worstX = x, worstY = y;
        const double excess = off - 2 - 0.08 * contrastAt(exact, x, y, members[i]);
        if (e.isEdge && excess > worstEdge) worstEdge = excess, edgeX = x, edgeY = y;
      }
    }
  }
  EXPECT_LE(worst, 2) << "away from edges, at " << worstX << "," << worstY;
  EXPECT_LE(worstEdge, 0) << "beyond the edge's tolerance at " << edgeX << "," << edgeY;
}

INSTANTIATE_TEST_SUITE_P(Strokes, Accuracy,
                         testing::Combine(testing::ValuesIn(cases()),
                                          testing::Values(200, 800, 2160)),
                         [](const auto& param) {
                           return std::get<0>(param.param).name +
                                  std::to_string(std::get<1>(param.param));
                         });

/// Back and forth from corner to corner, each a bend much tighter than the stroke is wide.
strokes::Stroke scribble(double width) {
  std::mt19937 dice(10);
  const auto coordinate = [&dice] { return 15 + static_cast<double>(dice() % 1200) / 10; };
  std::vector<strokes::StrokePoint> points;
  for (int i = 0; i < 60; ++i) {
    const double x = coordinate();
    points.push_back({x, coordinate(), width});
  }
  return strokeInUnits(points, 1);
}

TEST(ScribbleAccuracy, CornersHaveNeitherHolesNorTips) {
  constexpr int kHeight = 1080, kSide = kShownUnits * kHeight / 800;
  for (const double width : {1.5, 3.0, 8.0, 20.0}) {
    RenderScene scene;
    scene.background = CanvasBackground::transparent;
    scene.glow = false;
    scene.strokes = {scribble(width)};
    const auto exact =
        referencePicture(scene.strokes[0], false, kHeight * kAspect, kHeight, kSide, kSide);
    pixels::Surface drawn(kSide, kSide);

    CanvasRenderer::render(scene, {drawn.view(), 1}, {kHeight * kAspect, kHeight});

    double worst = 0;
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x)
        worst = std::max(worst, std::abs(drawn.row(y)[4 * x + 3] - exact.at(x, y).a));
    }
    // A sample of sixteen in a pixel may fall on the other side of a corner.
    EXPECT_LE(worst, 24) << "a stroke " << width << " wide";
  }
}

}  // namespace
}  // namespace render
