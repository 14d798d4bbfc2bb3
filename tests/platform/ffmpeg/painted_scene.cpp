#include "tests/platform/ffmpeg/painted_scene.h"

#include <cmath>
#include <numbers>

#include "strokes/palette.h"
#include "strokes/stroke_store.h"

namespace support {

namespace {

constexpr int kPointsPerStroke = 40;

void addLoop(strokes::StrokeStore& store, int color, double width, double turn, int points) {
  for (int i = 0; i < points; ++i) {
    const double angle = turn + 2 * std::numbers::pi * i / kPointsPerStroke;
    const strokes::StrokePoint point{0.12 + 0.1 * color + 0.12 * std::cos(angle),
                                     0.5 + 0.35 * std::sin(2 * angle + color), width};
    if (i == 0) {
      store.begin(point, color, 0);
    } else {
      store.add(point, 0);
    }
  }
  store.end(0);
}

}  // namespace

render::RenderScene paintedScene(int frame) {
  strokes::StrokeStore store;
  const int colors = static_cast<int>(strokes::Palette::colors.size());
  for (int color = 0; color < colors; ++color) {
    addLoop(store, color, color % 2 == 0 ? 3 : 14, 0, kPointsPerStroke);
  }
  addLoop(store, frame / 30 % colors, 8, 0.02 * frame, 2 + frame % (kPointsPerStroke - 1));
  render::RenderScene scene;
  scene.background = render::CanvasBackground::black;
  scene.strokes = store.strokes();
  scene.glow = true;
  return scene;
}

}  // namespace support
