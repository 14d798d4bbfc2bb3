#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "render/canvas_renderer.h"
#include "scenes.h"

namespace render {
namespace {

/// A stroke as a hand draws it.
strokes::Stroke closePoints() {
  std::vector<strokes::StrokePoint> points;
  for (int i = 0; i <= 60; ++i) {
    const double t = i / 60.0;
    points.push_back({0.1 + 0.8 * t + 0.05 * std::sin(30 * t), 0.5 + 0.4 * std::sin(9 * t),
                      18 + 9 * std::sin(13 * t)});
  }
  return strokeOf(points, 3);
}

RenderScene everything() {
  RenderScene scene = sceneOn(
      CanvasBackground::camera,
      {strokeOf({{0.1, 0.2, 20}, {0.5, 0.8, 30}, {0.9, 0.2, 12}, {0.4, 0.3, 3}}, 1),
       strokeOf({{0.8, 0.7, 40}}, 2), strokeOf({{0.2, 0.7, 4}, {0.6, 0.6, 2}}, 4), closePoints()});
  scene.frame = imageOf(50, 40, [](int x, int y) { return Bgra{5 * x, 6 * y, x ^ y, 0}; });
  scene.dim = 0.35;
  scene.glow = true;
  scene.fadeEnabled = true;
  scene.fadeSeconds = 1;
  scene.now = 1.4;
  scene.strokes[2].lastTime = 1;
  return scene;
}

/// With and without glow: thin lines differ most without.
class InstructionSets : public testing::TestWithParam<bool> {};

TEST_P(InstructionSets, AllDrawTheSamePicture) {
  RenderScene scene = everything();
  scene.glow = GetParam();
  const auto expected = CanvasRenderer::makeImage(scene, {301, 203});
  ASSERT_TRUE(expected);
  int tried = 0;
  for (std::int64_t rest = hwy::SupportedTargets(); rest != 0; rest &= rest - 1) {
    hwy::SetSupportedTargetsForTest(rest & -rest);
    hwy::GetChosenTarget().DeInit();

    EXPECT_EQ(CanvasRenderer::makeImage(scene, {301, 203}), expected)
        << hwy::TargetName(rest & -rest);

    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().DeInit();
    ++tried;
  }
  EXPECT_GE(tried, 1);
}

INSTANTIATE_TEST_SUITE_P(Glow, InstructionSets, testing::Bool());

}  // namespace
}  // namespace render
