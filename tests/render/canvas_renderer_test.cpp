#include "render/canvas_renderer.h"

#include <gtest/gtest.h>

#include <array>

namespace render {
namespace {

strokes::Stroke straightStroke(double y, double width, int color = 0) {
  return {{}, {{0.1, y, width}, {0.5, y, width}, {0.9, y, width}}, color, 0};
}

TEST(CanvasRenderer, AGlowingStrokeFallsOffAsTheClosedFormSays) {
  RenderScene scene;
  scene.background = CanvasBackground::black;
  scene.glow = true;
  // Pixel centres lie a whole number of pixels from the centre line.
  scene.strokes = {straightStroke(400.5 / 800, 20)};

  const auto picture = CanvasRenderer::makeImage(scene, {1280, 800});

  ASSERT_TRUE(picture);
  struct Expected {
    int offset, r, g, b;
  };
  for (const Expected& e : std::array<Expected, 8>{{{0, 175, 246, 255},
                                                    {5, 26, 230, 255},
                                                    {12, 15, 136, 151},
                                                    {15, 11, 99, 110},
                                                    {20, 6, 57, 63},
                                                    {25, 4, 35, 38},
                                                    {30, 2, 20, 22},
                                                    {40, 1, 5, 6}}}) {
    const std::uint8_t* pixel = picture->row(400 + e.offset) + 4 * 640;
    EXPECT_NEAR(pixel[2], e.r, 1) << e.offset;
    EXPECT_NEAR(pixel[1], e.g, 1) << e.offset;
    EXPECT_NEAR(pixel[0], e.b, 1) << e.offset;
  }
}

}  // namespace
}  // namespace render
