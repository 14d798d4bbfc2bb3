#pragma once

#include <vector>

#include "render/curve_piece.h"
#include "render/glow_layer.h"
#include "render/paint_tile.h"
#include "render/piece_index.h"
#include "render/pixel_rect.h"
#include "render/tile_coverage.h"
#include "strokes/stroke_points.h"

namespace render {

/// The masks of one stroke: where it is, and how strongly, before any colour. Every tile of the
/// canvas can be asked for on its own.
class StrokeShape {
 public:
  /// Right for every pixel of `area`, device pixels.
  void build(const strokes::StrokePoints& points, const CanvasMapping& mapping, bool glow,
             const PixelRect& area);

  /// The pixels that the stroke can touch, within the area; empty when there are none.
  const PixelRect& bounds() const { return bounds_; }

  /// Fetches a tile, counted from the canvas's top left corner; false when the stroke has nothing
  /// in it.
  bool openTile(int tileX, int tileY);

  /// The shares of one row of the opened tile.
  void rowOfTile(int y, TileRowShares& shares) const;

 private:
  std::vector<CurvePiece> pieces_;
  PieceIndex index_;
  GlowLayer wide_;
  GlowLayer narrow_;
  PixelRect bounds_;
  double reach_ = 0;
  bool glow_ = false;

  std::vector<CurvePiece> near_;  // The pieces that paint in the opened tile.
  bool hasWide_ = false;
  bool hasNarrow_ = false;
  bool hasBody_ = false;
  TileCoverage coverage_;
};

}  // namespace render
