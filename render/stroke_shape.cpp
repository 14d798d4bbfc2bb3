#include "render/stroke_shape.h"

#include <algorithm>

#include "render/paint_tile.h"

namespace render {

namespace {

// Without glow: a pixel that the border crosses has its centre no farther outside the paint.
constexpr double kBorderPx = 1;
// A blur radius is this many sigmas of its Gaussian.
constexpr double kSigmasInRadius = 2;
// Of the two glow passes, in reference units.
constexpr double kWideSigma = 30 / kSigmasInRadius;
constexpr double kNarrowSigma = 10 / kSigmasInRadius;

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
  index_.findReached(pieces_, bounds.intersected(tileArea), reachPx);
}

void StrokeShape::build(const strokes::StrokePoints& points, const CanvasMapping& mapping,
                        bool glow, const PixelRect& area) {
  outline(points, mapping, glow, area);
  trimJoints(pieces_);
  index_.sortPieces(pieces_);
  strips_.clear();
  appendStrips(pieces_, strips_);
  if (!glow || tiles().isEmpty()) return;
  buildGlows(pieces_, strips_, kWideSigma * unitPx(mapping), kNarrowSigma * unitPx(mapping),
             pixelsOfTiles(tiles()), wide_, narrow_);
}

std::size_t StrokeShape::bytesHeld() const {
  return sizeof *this + pieces_.capacity() * sizeof(CurvePiece) +
         strips_.capacity() * sizeof(Strip) + index_.bytesHeld() + wide_.bytesHeld() +
         narrow_.bytesHeld();
}

}  // namespace render
