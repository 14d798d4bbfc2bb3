#include "render/live_canvas.h"

#include <algorithm>
#include <cstring>

#include "render/background.h"
#include "render/compositing.h"
#include "render/cursor.h"

namespace render {

namespace {

bool areSamePixels(const pixels::SurfaceView& a, const pixels::SurfaceView& b) {
  return a.data == b.data && a.width == b.width && a.height == b.height &&
         a.strideBytes == b.strideBytes;
}

/// Lays a picture over all pixels, stretched, without smoothing: it stands in for moments.
void layStretched(const pixels::Surface& picture, const pixels::SurfaceView& pixels) {
  std::vector<int> columns(static_cast<std::size_t>(pixels.width));
  for (int x = 0; x < pixels.width; ++x)
    columns[static_cast<std::size_t>(x)] =
        4 * static_cast<int>((2ll * x + 1) * picture.width() / (2ll * pixels.width));
  for (int y = 0; y < pixels.height; ++y) {
    const std::uint8_t* source =
        picture.row(static_cast<int>((2ll * y + 1) * picture.height() / (2ll * pixels.height)));
    std::uint8_t* row = pixels.row(y);
    for (const int column : columns) {
      const std::uint8_t* over = source + column;
      for (int c = 0; c < 4; ++c)
        row[c] = static_cast<std::uint8_t>(over[c] + row[c] * (255 - over[3]) / 255);
      row += 4;
    }
  }
}

}  // namespace

LiveFrame LiveCanvas::draw(const RenderScene& scene, const pixels::DrawingContext& context,
                           pixels::Size size) {
  const pixels::SurfaceView& pixels = context.pixels;
  if (pixels.width < 1 || pixels.height < 1 || !(size.width > 0) || !(size.height > 0)) return {};
  const CanvasMapping mapping = CanvasMapping::of(size, context.deviceScale);
  const bool isOtherPainting = mapping != mapping_ || scene.glow != glow_ ||
                               pixels.width != pixels_.width || pixels.height != pixels_.height;
  if (isOtherPainting && wasBuilt_) {
    keepPicture();
    wasBuilt_ = false;
  }
  mapping_ = mapping;
  glow_ = scene.glow;

  const std::vector<int>& changed = painting_.update(scene, mapping, pixels.width, pixels.height);
  const PixelRect all{0, 0, pixels.width, pixels.height};
  LiveFrame result{all, painting_.isUpToDate()};
  if (painting_.isBuilding()) {
    drawStandIn(scene, context);
  } else {
    standIn_.reset();
    markChangedTiles(scene, context, changed);
    result.changed = drawMarked(scene, context);
  }
  wasBuilt_ = !painting_.isBuilding();
  pixels_ = pixels;
  background_ = scene.background;
  frame_ = scene.frame;
  dim_ = scene.dim;
  cursor_ = scene.cursor;
  cursorBounds_ =
      cursor_ ? cursorBounds(*cursor_, mapping, pixels.width, pixels.height) : PixelRect{};
  return result;
}

void LiveCanvas::keepPicture() {
  standIn_.emplace(pixels_.width, pixels_.height);
  const PixelRect& tiles = painting_.tiles();
  for (int y = tiles.top; y < tiles.bottom; ++y) {
    for (int x = tiles.left; x < tiles.right; ++x) {
      if (const PaintTile* paint = painting_.paintOf(y * tiles.width() + x))
        layTileOverPixels(*paint, x, y, standIn_->view());
    }
  }
}

void LiveCanvas::drawStandIn(const RenderScene& scene, const pixels::DrawingContext& context) {
  Background ground(scene, mapping_, context.pixels);
  for (int y = 0; y < context.pixels.height; ++y) ground.replaceRow(y, 0, context.pixels.width);
  if (standIn_ && !standIn_->isEmpty()) layStretched(*standIn_, context.pixels);
  if (scene.cursor) drawCursor(*scene.cursor, mapping_, context.pixels);
}

bool LiveCanvas::isSameGround(const RenderScene& scene) const {
  if (scene.background != background_) return false;
  if (scene.background != CanvasBackground::camera) return true;
  if (!scene.frame || !frame_) return !scene.frame && !frame_;
  return scene.dim == dim_ && scene.frame->sharesPixelsWith(*frame_) &&
         scene.frame->width() == frame_->width() && scene.frame->height() == frame_->height();
}

void LiveCanvas::markChangedTiles(const RenderScene& scene, const pixels::DrawingContext& context,
                                  const std::vector<int>& changed) {
  const PixelRect& tiles = painting_.tiles();
  const bool isAllNew =
      !wasBuilt_ || !areSamePixels(context.pixels, pixels_) || !isSameGround(scene);
  marked_.assign(static_cast<std::size_t>(tiles.width()) * static_cast<std::size_t>(tiles.height()),
                 isAllNew);
  if (isAllNew) return;
  for (const int tile : changed) marked_[static_cast<std::size_t>(tile)] = true;
  markCursorTiles(scene);
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
      if (!marked_[static_cast<std::size_t>(y * painting_.tiles().width() + x)]) continue;
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

PixelRect LiveCanvas::drawMarked(const RenderScene& scene, const pixels::DrawingContext& context) {
  const pixels::SurfaceView& pixels = context.pixels;
  const PixelRect& tiles = painting_.tiles();
  Background ground(scene, mapping_, pixels);
  PixelRect drawn;
  for (int y = tiles.top; y < tiles.bottom; ++y) {
    const int firstTile = y * tiles.width();
    const auto isMarked = [&](int x) { return marked_[static_cast<std::size_t>(firstTile + x)]; };
    const PixelRect band =
        pixelsOfTiles({0, y, tiles.right, y + 1}).intersected({0, 0, pixels.width, pixels.height});
    for (int row = band.top; row < band.bottom; ++row) {
      for (int from = 0; from < tiles.right; ++from) {
        if (!isMarked(from)) continue;
        int to = from + 1;
        while (to < tiles.right && isMarked(to)) ++to;
        ground.replaceRow(row, from * PaintTile::kSide,
                          std::min(to * PaintTile::kSide, pixels.width));
        if (row == band.top) drawn = drawn.united({from, y, to, y + 1});
        from = to;
      }
    }
    for (int column = 0; column < tiles.right; ++column) {
      if (!isMarked(column)) continue;
      if (const PaintTile* paint = painting_.paintOf(firstTile + column))
        layTileOverPixels(*paint, column, y, pixels);
    }
  }
  if (drawn.isEmpty()) return {};
  if (scene.cursor) {
    const PixelRect under =
        tilesAround(cursorBounds(*scene.cursor, mapping_, pixels.width, pixels.height));
    const bool isUnderDrawn =
        !under.isEmpty() &&
        marked_[static_cast<std::size_t>(under.top * tiles.width() + under.left)];
    if (isUnderDrawn) drawCursor(*scene.cursor, mapping_, pixels);
  }
  return pixelsOfTiles(drawn).intersected({0, 0, pixels.width, pixels.height});
}

}  // namespace render
