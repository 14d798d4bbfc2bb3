#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "pixels/surface.h"
#include "render/paint_tile.h"
#include "render/pixel_rect.h"

namespace render {

/// The strokes of a canvas as they are shown: 8-bit pixels, in rows as the canvas has them, so that
/// laying them over a new camera picture is one walk through memory. Knows which tiles are empty.
class StrokesLayer {
 public:
  /// Makes the layer as large as a canvas of `width` by `height` pixels. What it showed before
  /// stands in for what is to come, stretched without smoothing.
  void resize(int width, int height);

  /// Makes room for what is to be shown. From then on, until the next resize(), different tiles can
  /// be shown by different threads at once.
  void makeRoom();

  /// Shows the tile from now on; nothing there when null.
  void show(int tileX, int tileY, const PaintTile* paint);

  bool isPainted(int tileX, int tileY) const { return isPainted_[slot(tileX, tileY)] != 0; }

  /// Lays the pixels of row `y` from column `left` up to `right` over `pixels`, the place of the
  /// first of them.
  void layRow(int y, int left, int right, std::uint8_t* pixels) const;

  std::size_t bytesHeld() const;

 private:
  std::size_t slot(int tileX, int tileY) const {
    return static_cast<std::size_t>(tileY) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(tileX);
  }

  int width_ = 0;
  int height_ = 0;
  int columns_ = 0;          // Of tiles.
  pixels::Surface picture_;  // Whole tiles; empty until something is painted.
  std::vector<std::uint8_t> isPainted_;
};

}  // namespace render
