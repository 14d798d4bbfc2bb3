#include "render/strokes_layer.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "render/tile_pixels.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;

/// For each of `count` new pixels the old one at its place.
std::vector<int> nearestOf(int count, int before) {
  std::vector<int> nearest(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    nearest[static_cast<std::size_t>(i)] = static_cast<int>((2ll * i + 1) * before / (2ll * count));
  return nearest;
}

}  // namespace

void StrokesLayer::resize(int width, int height) {
  if (width == width_ && height == height_) return;
  const PixelRect tiles = tilesAround({0, 0, width, height});
  const bool isAnyPainted = std::any_of(isPainted_.begin(), isPainted_.end(),
                                        [](std::uint8_t isPainted) { return isPainted != 0; });
  const pixels::Surface before = std::exchange(picture_, {});
  columns_ = tiles.width();
  isPainted_.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(tiles.height()),
                    0);
  const int widthBefore = std::exchange(width_, width);
  const int heightBefore = std::exchange(height_, height);
  if (!isAnyPainted) return;

  picture_ = pixels::Surface(columns_ * kTile, tiles.height() * kTile);
  std::fill(isPainted_.begin(), isPainted_.end(), std::uint8_t{1});
  const std::vector<int> columns = nearestOf(width, widthBefore);
  const std::vector<int> rows = nearestOf(height, heightBefore);
  const pixels::SurfaceView view = picture_.view();
  for (int y = 0; y < height; ++y) {
    const int source = rows[static_cast<std::size_t>(y)];
    std::uint8_t* row = view.row(y);
    if (y > 0 && source == rows[static_cast<std::size_t>(y) - 1]) {
      std::memcpy(row, view.row(y - 1), 4 * static_cast<std::size_t>(width));
      continue;
    }
    const std::uint8_t* pixels = before.row(source);
    for (int x = 0; x < width; ++x)
      std::memcpy(row + 4 * x, pixels + 4 * columns[static_cast<std::size_t>(x)], 4);
  }
}

void StrokesLayer::makeRoom() {
  if (!picture_.isEmpty() || columns_ == 0) return;
  picture_ =
      pixels::Surface(columns_ * kTile, static_cast<int>(isPainted_.size()) / columns_ * kTile);
}

void StrokesLayer::show(int tileX, int tileY, const PaintTile* paint) {
  std::uint8_t& isPainted = isPainted_[slot(tileX, tileY)];
  if (!paint && !isPainted) return;
  makeRoom();
  const pixels::SurfaceView view = picture_.view();
  std::uint8_t* corner = view.row(tileY * kTile) + 4 * tileX * kTile;
  isPainted = paint ? 1 : 0;
  if (paint) {
    flattenTile(*paint, corner, view.strideBytes);
    return;
  }
  // Nothing may be left of it for when the layer stands in at another size.
  for (int y = 0; y < kTile; ++y, corner += view.strideBytes) std::memset(corner, 0, 4 * kTile);
}

void StrokesLayer::layRow(int y, int left, int right, std::uint8_t* pixels) const {
  layPixels(picture_.row(y) + 4 * left, right - left, pixels);
}

std::size_t StrokesLayer::bytesHeld() const {
  return picture_.strideBytes() * static_cast<std::size_t>(picture_.height());
}

}  // namespace render
