#include "render/stroke_shape.h"

#include <algorithm>

#include "render/paint_tile.h"

namespace render {

namespace {

// The blur radii of the two glow passes in reference units; a radius is two sigmas.
constexpr double kWideSigma = 30.0 / 2;
constexpr double kNarrowSigma = 10.0 / 2;
// Without glow: borders are antialiased, and their slope is looked at from a pixel outside.
constexpr double kBorderPx = 2;

double unitPx(const CanvasMapping& mapping) {
  return mapping.unit * mapping.deviceScale;
}

}  // namespace

double StrokeShape::reach(const CanvasMapping& mapping, bool glow) {
  if (!glow) return kBorderPx;
  return std::max(GlowLayer::reach(kWideSigma * unitPx(mapping)),
                  GlowLayer::reach(kNarrowSigma * unitPx(mapping)));
}

void StrokeShape::outline(const strokes::StrokePoints& points, const CanvasMapping& mapping,
                          bool glow, const PixelRect& area) {
  glow_ = glow;
  const PixelRect tileArea = pixelsOfTiles(tilesAround(area));
  const double reachPx = reach(mapping, glow);
  pieces_.clear();
  appendCurvePieces(points, mapping, tileArea, reachPx, pieces_);
  PixelRect bounds;
  for (const CurvePiece& piece : pieces_) bounds = bounds.united(piece.box(reachPx));
  index_.build(pieces_, bounds.intersected(tileArea), reachPx);
}

void StrokeShape::build(const strokes::StrokePoints& points, const CanvasMapping& mapping,
                        bool glow, const PixelRect& area) {
  outline(points, mapping, glow, area);
  strips_.clear();
  appendStrips(pieces_, strips_);
  if (!glow || tiles().isEmpty()) return;
  const PixelRect reached = pixelsOfTiles(tiles());
  wide_.build(pieces_, strips_, kWideSigma * unitPx(mapping), reached);
  narrow_.build(pieces_, strips_, kNarrowSigma * unitPx(mapping), reached);
}

}  // namespace render
