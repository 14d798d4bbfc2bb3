#include "render/canvas_renderer.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "render/background.h"
#include "render/cursor.h"
#include "render/fading.h"
#include "render/parallel.h"
#include "render/stroke_colors.h"
#include "render/stroke_shape.h"
#include "render/tile_brush.h"
#include "render/tile_pixels.h"

namespace render::CanvasRenderer {

namespace {

constexpr unsigned kMostThreads = 8;

struct ShownStroke {
  StrokeShape shape;
  StrokeColors colors{};
  double alpha = 1;
};

// Fewer strokes than this are drawn before another thread has begun.
constexpr std::size_t kStrokesWorthAThread = 8;

unsigned threadsFor(std::size_t strokes) {
  const unsigned cores = std::max(std::thread::hardware_concurrency(), 1u);
  return static_cast<unsigned>(
      std::clamp<std::size_t>(strokes / kStrokesWorthAThread, 1, std::min(cores, kMostThreads)));
}

std::vector<ShownStroke> shownStrokes(const RenderScene& scene, const CanvasMapping& mapping,
                                      const PixelRect& area) {
  std::vector<ShownStroke> shown;
  std::vector<const strokes::Stroke*> sources;
  for (const strokes::Stroke& stroke : scene.strokes) {
    const double alpha = fadeAlpha(scene, stroke);
    if (!(alpha > 0)) continue;
    shown.push_back({{}, strokeColors(stroke.colorIndex), alpha});
    sources.push_back(&stroke);
  }
  const int count = static_cast<int>(shown.size());
  shareOut(count, threadsFor(shown.size()), [&](const std::function<int()>& next) {
    for (int i = next(); i < count; i = next()) {
      const auto place = static_cast<std::size_t>(i);
      shown[place].shape.build(sources[place]->points, mapping, scene.glow, area);
    }
  });
  return shown;
}

/// What one thread draws with.
struct Tools {
  Background ground;
  TileBrush brush;
  PaintTile tile;
};

/// One row of tiles, while the ground is still near the processor.
void drawBand(const std::vector<ShownStroke>& shown, int y, int columns, Tools& tools,
              const pixels::SurfaceView& pixels) {
  const int top = y * PaintTile::kSide;
  tools.ground.drawRows(top, std::min(top + PaintTile::kSide, pixels.height));
  for (int x = 0; x < columns; ++x) {
    bool isPainted = false;
    for (const ShownStroke& stroke : shown) {
      if (!stroke.shape.isReached(x, y)) continue;
      if (!isPainted) std::memset(&tools.tile, 0, sizeof tools.tile);
      isPainted = true;
      tools.brush.lay(stroke.shape, stroke.colors, stroke.alpha, x, y, tools.tile);
    }
    if (isPainted) layTileOverPixels(tools.tile, x, y, pixels);
  }
}

void drawBelowCursor(const RenderScene& scene, const CanvasMapping& mapping,
                     const pixels::SurfaceView& pixels) {
  const PixelRect area{0, 0, pixels.width, pixels.height};
  const std::vector<ShownStroke> shown = shownStrokes(scene, mapping, area);
  const PixelRect tiles = tilesAround(area);
  // Every tile is drawn by one thread alone, so the picture does not depend on their number.
  shareOut(tiles.height(), threadsFor(shown.size()), [&](const std::function<int()>& next) {
    const auto tools = std::make_unique<Tools>();
    tools->ground.show(scene, mapping, pixels);
    for (int y = next(); y < tiles.height(); y = next())
      drawBand(shown, y, tiles.width(), *tools, pixels);
  });
}

}  // namespace

void render(const RenderScene& scene, const pixels::DrawingContext& context, pixels::Size size) {
  assert(std::isfinite(size.width) && std::isfinite(size.height));
  if (context.pixels.width < 1 || context.pixels.height < 1) return;
  if (!(size.width > 0) || !(size.height > 0)) return;
  const CanvasMapping mapping = CanvasMapping::of(size, context.deviceScale);
  drawBelowCursor(scene, mapping, context.pixels);
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
