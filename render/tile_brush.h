#pragma once

#include "render/glow_layer.h"
#include "render/paint_tile.h"
#include "render/stroke_shape.h"
#include "render/tile_coverage.h"

namespace render {

/// Lays strokes over tiles. Holds nothing but room to work in; one for each thread.
class TileBrush {
 public:
  /// Lays the part of `shape` that falls into tile (tileX, tileY), fading by `alpha`, 0 to 1, over
  /// what is painted there.
  void lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX, int tileY,
           PaintTile& tile);

 private:
  GlowTile wide_;
  GlowTile narrow_;
  TileCoverage coverage_;
};

}  // namespace render
