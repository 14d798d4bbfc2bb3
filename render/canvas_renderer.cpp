#include "render/canvas_renderer.h"

#include <cassert>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "render/background.h"
#include "render/compositing.h"
#include "render/cursor.h"
#include "render/fading.h"
#include "render/stroke_colors.h"
#include "render/stroke_shape.h"
#include "render/tile_brush.h"

namespace render::CanvasRenderer {

namespace {

struct ShownStroke {
  StrokeShape shape;
  StrokeColors colors{};
  double alpha = 1;
};

std::vector<ShownStroke> shownStrokes(const RenderScene& scene, const CanvasMapping& mapping,
                                      const PixelRect& area) {
  std::vector<ShownStroke> shown;
  for (const strokes::Stroke& stroke : scene.strokes) {
    const double alpha = fadeAlpha(scene, stroke);
    if (!(alpha > 0)) continue;
    ShownStroke next{{}, strokeColors(stroke.colorIndex), alpha};
    next.shape.build(stroke.points, mapping, scene.glow, area);
    if (!next.shape.tiles().isEmpty()) shown.push_back(std::move(next));
  }
  return shown;
}

void drawStrokes(const RenderScene& scene, const CanvasMapping& mapping,
                 const pixels::SurfaceView& pixels) {
  const PixelRect area{0, 0, pixels.width, pixels.height};
  const std::vector<ShownStroke> shown = shownStrokes(scene, mapping, area);
  if (shown.empty()) return;
  const PixelRect tiles = tilesAround(area);
  const auto tile = std::make_unique<PaintTile>();
  const auto brush = std::make_unique<TileBrush>();
  for (int y = tiles.top; y < tiles.bottom; ++y) {
    for (int x = tiles.left; x < tiles.right; ++x) {
      bool isPainted = false;
      for (const ShownStroke& stroke : shown) {
        if (!stroke.shape.isReached(x, y)) continue;
        if (!isPainted) std::memset(tile.get(), 0, sizeof(PaintTile));
        isPainted = true;
        brush->lay(stroke.shape, stroke.colors, stroke.alpha, x, y, *tile);
      }
      if (isPainted) layTileOverPixels(*tile, x, y, pixels);
    }
  }
}

}  // namespace

void render(const RenderScene& scene, const pixels::DrawingContext& context, pixels::Size size) {
  assert(std::isfinite(size.width) && std::isfinite(size.height));
  if (context.pixels.width < 1 || context.pixels.height < 1) return;
  if (!(size.width > 0) || !(size.height > 0)) return;
  const CanvasMapping mapping = CanvasMapping::of(size, context.deviceScale);
  Background(scene, mapping, context.pixels).draw();
  drawStrokes(scene, mapping, context.pixels);
  if (scene.cursor) drawCursor(*scene.cursor, mapping, context.pixels);
}

std::optional<pixels::Surface> makeImage(const RenderScene& scene, pixels::Size size) {
  constexpr double kWidest = 1 << 16;
  if (!(size.width >= 1) || !(size.height >= 1)) return std::nullopt;
  if (size.width > kWidest || size.height > kWidest) return std::nullopt;
  try {
    pixels::Surface picture(static_cast<int>(size.width), static_cast<int>(size.height));
    render(scene, {picture.view(), 1},
           {static_cast<double>(picture.width()), static_cast<double>(picture.height())});
    return picture;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

}  // namespace render::CanvasRenderer
