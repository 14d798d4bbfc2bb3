#include "render/live_canvas.h"

#include <algorithm>
#include <utility>

#include "render/cursor.h"

namespace render {

namespace {

bool areSamePixels(const pixels::SurfaceView& a, const pixels::SurfaceView& b) {
  return a.data == b.data && a.width == b.width && a.height == b.height &&
         a.strideBytes == b.strideBytes;
}

}  // namespace

LiveFrame LiveCanvas::draw(const RenderScene& scene, const pixels::DrawingContext& context,
                           pixels::Size size) {
  const pixels::SurfaceView& pixels = context.pixels;
  if (pixels.width < 1 || pixels.height < 1 || !(size.width > 0) || !(size.height > 0)) return {};
  const CanvasMapping mapping = CanvasMapping::of(size, context.deviceScale);
  const bool isOtherGround =
      mapping != mapping_ || !areSamePixels(pixels, pixels_) || !isSameGround(scene);
  if (mapping != mapping_ || scene.glow != glow_ || pixels.width != pixels_.width ||
      pixels.height != pixels_.height) {
    isBuilt_ = false;
  }
  mapping_ = mapping;
  pixels_ = pixels;
  glow_ = scene.glow;

  layer_.resize(pixels.width, pixels.height);
  const std::vector<int>& changed =
      painting_.update(scene, mapping, pixels.width, pixels.height, layer_);
  const bool isJustBuilt = !isBuilt_ && !painting_.isBuilding();
  isBuilt_ = !painting_.isBuilding();
  const int count = painting_.tiles().width() * painting_.tiles().height();
  marked_.assign(static_cast<std::size_t>(count), isOtherGround || isJustBuilt);
  if (isJustBuilt) {
    for (int tile = 0; tile < count; ++tile) showTile(tile);
  } else if (isBuilt_) {
    for (const int tile : changed) {
      showTile(tile);
      marked_[static_cast<std::size_t>(tile)] = true;
    }
  }
  markCursorTiles(scene);
  const LiveFrame result{drawMarked(scene, context), painting_.isUpToDate()};

  background_ = scene.background;
  frame_ = scene.frame;
  dim_ = scene.dim;
  cursor_ = scene.cursor;
  cursorBounds_ =
      cursor_ ? cursorBounds(*cursor_, mapping, pixels.width, pixels.height) : PixelRect{};
  return result;
}

bool LiveCanvas::isSameGround(const RenderScene& scene) const {
  if (scene.background != background_) return false;
  if (scene.background != CanvasBackground::camera) return true;
  if (!scene.frame || !frame_) return !scene.frame && !frame_;
  return scene.dim == dim_ && scene.frame->sharesPixelsWith(*frame_) &&
         scene.frame->width() == frame_->width() && scene.frame->height() == frame_->height();
}

void LiveCanvas::showTile(int tile) {
  if (painting_.hasShown(tile)) return;
  const int columns = painting_.tiles().width();
  layer_.show(tile % columns, tile / columns, painting_.paintOf(tile));
}

void LiveCanvas::markCursorTiles(const RenderScene& scene) {
  // The cursor is mixed with what is under it, so its tiles are drawn together or not at all.
  const PixelRect bounds =
      scene.cursor ? cursorBounds(*scene.cursor, mapping_, pixels_.width, pixels_.height)
                   : PixelRect{};
  if (scene.cursor != cursor_) {
    markTiles(cursorBounds_);
    markTiles(bounds);
    return;
  }
  const PixelRect tiles = tilesAround(bounds);
  for (int y = tiles.top; y < tiles.bottom; ++y) {
    for (int x = tiles.left; x < tiles.right; ++x) {
      if (!isMarked(x, y)) continue;
      markTiles(bounds);
      return;
    }
  }
}

void LiveCanvas::markTiles(const PixelRect& pixels) {
  const PixelRect tiles = tilesAround(pixels);
  for (int y = tiles.top; y < tiles.bottom; ++y) {
    for (int x = tiles.left; x < tiles.right; ++x)
      marked_[static_cast<std::size_t>(y * painting_.tiles().width() + x)] = true;
  }
}

bool LiveCanvas::isMarked(int x, int y) const {
  return marked_[static_cast<std::size_t>(y * painting_.tiles().width() + x)];
}

PixelRect LiveCanvas::drawMarked(const RenderScene& scene, const pixels::DrawingContext& context) {
  const pixels::SurfaceView& pixels = context.pixels;
  if (std::find(marked_.begin(), marked_.end(), true) == marked_.end()) return {};
  ground_.show(scene, mapping_, pixels);
  PixelRect drawn;
  const PixelRect& tiles = painting_.tiles();
  for (int y = tiles.top; y < tiles.bottom; ++y) drawn = drawn.united(drawBand(y, pixels));
  if (scene.cursor) {
    const PixelRect under =
        tilesAround(cursorBounds(*scene.cursor, mapping_, pixels.width, pixels.height));
    if (!under.isEmpty() && isMarked(under.left, under.top))
      drawCursor(*scene.cursor, mapping_, pixels);
  }
  return pixelsOfTiles(drawn).intersected({0, 0, pixels.width, pixels.height});
}

/// Draws the marked tiles of one row of tiles; which they are. Pixel row by pixel row, so that the
/// ground is still near the processor when the strokes are laid over it.
PixelRect LiveCanvas::drawBand(int y, const pixels::SurfaceView& pixels) {
  const int columns = painting_.tiles().width();
  const auto findRuns = [columns](std::vector<TileRun>& runs, auto isWanted) {
    runs.clear();
    for (int x = 0; x < columns; ++x) {
      if (!isWanted(x)) continue;
      if (runs.empty() || runs.back().end < x) runs.push_back({x, x});
      runs.back().end = x + 1;
    }
  };
  findRuns(groundRuns_, [&](int x) { return isMarked(x, y); });
  if (groundRuns_.empty()) return {};
  findRuns(paintedRuns_, [&](int x) { return isMarked(x, y) && layer_.isPainted(x, y); });
  const int bottom = std::min((y + 1) * PaintTile::kSide, pixels.height);
  for (int row = y * PaintTile::kSide; row < bottom; ++row) {
    const auto left = [](const TileRun& run) { return run.first * PaintTile::kSide; };
    const auto right = [&](const TileRun& run) {
      return std::min(run.end * PaintTile::kSide, pixels.width);
    };
    for (const TileRun& run : groundRuns_) ground_.replaceRow(row, left(run), right(run));
    for (const TileRun& run : paintedRuns_)
      layer_.layRow(row, left(run), right(run), pixels.row(row) + 4 * left(run));
  }
  return {groundRuns_.front().first, y, groundRuns_.back().end, y + 1};
}

}  // namespace render
