#pragma once

#include "render/compositing.h"
#include "render/glow_layer.h"
#include "render/kept_shares.h"
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

  /// Keeps that part, to be laid at any alpha.
  void keep(const StrokeShape& shape, int tileX, int tileY, KeptShares& kept);

 private:
  SharpMasks sharpMasks(const StrokeShape& shape, int tileX, int tileY);

  GlowTile wide_;
  GlowTile narrow_;
  TileCoverage coverage_;
  StrokeShares shares_;
};

}  // namespace render
