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

namespace render::CanvasRenderer {

namespace {

constexpr int kTile = PaintTile::kSide;

struct ShownStroke {
  StrokeShape shape;
  StrokeColors colors{};
  double alpha = 1;
};

std::vector<std::unique_ptr<ShownStroke>> shownStrokes(const RenderScene& scene,
                                                       const CanvasMapping& mapping,
                                                       const PixelRect& area) {
  std::vector<std::unique_ptr<ShownStroke>> shown;
  for (const strokes::Stroke& stroke : scene.strokes) {
    const double alpha = fadeAlpha(scene, stroke);
    if (!(alpha > 0)) continue;
    auto next = std::make_unique<ShownStroke>();
    next->shape.build(stroke.points, mapping, scene.glow, area);
    next->colors = strokeColors(stroke.colorIndex);
    next->alpha = alpha;
    if (!next->shape.bounds().isEmpty()) shown.push_back(std::move(next));
  }
  return shown;
}

void layStroke(const ShownStroke& stroke, PaintTile& tile) {
  TileRowShares shares;
  for (int y = 0; y < kTile; ++y) {
    stroke.shape.rowOfTile(y, shares);
    if (stroke.alpha < 1)
      fadeRow(static_cast<std::int16_t>(std::min(stroke.alpha * 32768, 32767.0)), shares);
    layOver(stroke.colors, shares, y, tile);
  }
}

void layTile(const PaintTile& tile, int left, int top, const pixels::SurfaceView& pixels) {
  const int count = std::min(kTile, pixels.width - left);
  const int rows = std::min(kTile, pixels.height - top);
  for (int y = 0; y < rows; ++y) layRowOverPixels(tile, y, count, pixels.row(top + y) + 4 * left);
}

void drawStrokes(const RenderScene& scene, const CanvasMapping& mapping,
                 const pixels::SurfaceView& pixels) {
  const auto shown = shownStrokes(scene, mapping, {0, 0, pixels.width, pixels.height});
  if (shown.empty()) return;
  const auto tile = std::make_unique<PaintTile>();
  for (int top = 0; top < pixels.height; top += kTile) {
    for (int left = 0; left < pixels.width; left += kTile) {
      bool isPainted = false;
      for (const auto& stroke : shown) {
        if (!stroke->shape.openTile(left / kTile, top / kTile)) continue;
        if (!isPainted) std::memset(tile.get(), 0, sizeof(PaintTile));
        isPainted = true;
        layStroke(*stroke, *tile);
      }
      if (isPainted) layTile(*tile, left, top, pixels);
    }
  }
}

}  // namespace

void render(const RenderScene& scene, const pixels::DrawingContext& context, pixels::Size size) {
  assert(std::isfinite(size.width) && std::isfinite(size.height));
  if (context.pixels.width < 1 || context.pixels.height < 1) return;
  if (!(size.width > 0) || !(size.height > 0)) return;
  const CanvasMapping mapping = CanvasMapping::of(size, context.deviceScale);
  drawBackground(scene, mapping, context.pixels);
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
