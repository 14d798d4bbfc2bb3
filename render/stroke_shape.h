#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "render/curve_piece.h"
#include "render/glow_layer.h"
#include "render/piece_index.h"
#include "render/pixel_rect.h"
#include "render/strip.h"
#include "strokes/stroke_points.h"

namespace render {

/// Where one stroke is, before any colour: its pieces by tile, and its two glows.
/// What a tile gets of it does not depend on the area that was asked for.
class StrokeShape {
 public:
  /// Finds the tiles that a stroke reaches within `area`, device pixels. Enough for isReached().
  void outline(const strokes::StrokePoints& points, const CanvasMapping& mapping, bool glow,
               const PixelRect& area);

  /// As outline(), and everything that painting the area's tiles takes.
  void build(const strokes::StrokePoints& points, const CanvasMapping& mapping, bool glow,
             const PixelRect& area);

  /// The tiles, counted from the canvas's top left corner, that the stroke can reach: some of them
  /// may stay empty.
  const PixelRect& tiles() const { return index_.tiles(); }
  bool isReached(int tileX, int tileY) const { return index_.isReached(tileX, tileY); }

  std::size_t bytesHeld() const;

  /// How far a stroke's light reaches beyond its paint, in pixels.
  static double reach(const CanvasMapping& mapping, bool glow);

 private:
  friend class TileBrush;

  bool glow_ = false;
  std::vector<CurvePiece> pieces_;
  std::vector<Strip> strips_;  // The pieces as strips, once built.
  PieceIndex index_;
  GlowLayer wide_;
  GlowLayer narrow_;
};

}  // namespace render
