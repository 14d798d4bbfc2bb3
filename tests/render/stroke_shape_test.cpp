#include "render/stroke_shape.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "render/stroke_colors.h"
#include "render/tile_brush.h"

namespace render {
namespace {

constexpr double kWidth = 700, kHeight = 450;

strokes::StrokePoints wildStroke(unsigned seed) {
  std::mt19937 dice(seed);
  const auto between = [&dice](double low, double high) {
    return low + (high - low) * (static_cast<double>(dice()) / 4294967296.0);
  };
  std::vector<strokes::StrokePoint> points;
  // Now and then a point far outside, where coordinates are coarse.
  const auto position = [&] {
    return between(0, 1) < 0.05 ? between(-1e6, 1e6) : between(-0.2, 1.2);
  };
  const auto count = static_cast<std::size_t>(between(1, 9));
  const double widest = between(2, 60);
  while (points.size() < count) points.push_back({position(), position(), between(0, widest)});
  return strokes::StrokePoints(std::move(points));
}

PaintTile tileOf(const StrokeShape& shape, int x, int y) {
  PaintTile tile{};
  TileBrush().lay(shape, strokeColors(1), 1, x, y, tile);
  return tile;
}

class StrokeShapes : public testing::TestWithParam<bool> {};

TEST_P(StrokeShapes, GiveATileTheSameWhateverAreaWasAskedFor) {
  const bool glow = GetParam();
  const PixelRect canvas{0, 0, static_cast<int>(kWidth), static_cast<int>(kHeight)};
  for (unsigned seed = 0; seed < 150; ++seed) {
    const CanvasMapping mapping = CanvasMapping::of({kWidth, kHeight}, 1 + seed % 2);
    const strokes::StrokePoints points = wildStroke(seed);
    StrokeShape whole;
    whole.build(points, mapping, glow, canvas);
    const PixelRect tiles = whole.tiles().intersected(tilesAround(canvas));
    for (int y = tiles.top; y < tiles.bottom; ++y) {
      for (int x = tiles.left + y % 3; x < tiles.right; x += 3) {
        StrokeShape part;
        part.build(points, mapping, glow, pixelsOfTiles({x, y, x + 1, y + 1}).intersected(canvas));

        const PaintTile expected = tileOf(whole, x, y), tile = tileOf(part, x, y);

        ASSERT_EQ(std::memcmp(&tile, &expected, sizeof tile), 0)
            << "stroke " << seed << ", tile " << x << ", " << y;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Glow, StrokeShapes, testing::Bool());

}  // namespace
}  // namespace render
