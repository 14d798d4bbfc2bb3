#include "render/stroke_shape.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "render/compositing.h"

namespace render {

namespace {

// The blur radii of the two glow passes in reference units; a radius is two sigmas.
constexpr double kWideSigma = 30.0 / 2;
constexpr double kNarrowSigma = 10.0 / 2;
}  // namespace

void StrokeShape::build(const strokes::StrokePoints& points, const CanvasMapping& mapping,
                        bool glow, const PixelRect& area) {
  const double unitPx = mapping.unit * mapping.deviceScale;
  glow_ = glow;
  reach_ = glow ? std::max(GlowLayer::reach(kWideSigma * unitPx),
                           GlowLayer::reach(kNarrowSigma * unitPx))
                : 2;
  pieces_.clear();
  bounds_ = {};
  appendCurvePieces(points, mapping, area, reach_, pieces_);
  for (const CurvePiece& piece : pieces_) bounds_ = bounds_.united(piece.box(reach_));
  bounds_ = bounds_.intersected(area);
  index_.build(pieces_, bounds_, reach_);
  if (glow_ && !bounds_.isEmpty()) {
    wide_.build(pieces_, kWideSigma * unitPx, bounds_);
    narrow_.build(pieces_, kNarrowSigma * unitPx, bounds_);
  }
}

bool StrokeShape::openTile(int tileX, int tileY) {
  if (!index_.isReached(tileX, tileY)) return false;
  near_.clear();
  for (const int number : index_.piecesIn(tileX, tileY))
    near_.push_back(pieces_[static_cast<std::size_t>(number)]);
  hasWide_ = glow_ && wide_.openTile(tileX, tileY);
  hasNarrow_ = glow_ && narrow_.openTile(tileX, tileY);
  if (near_.empty() && !hasWide_ && !hasNarrow_) return false;
  hasBody_ = !near_.empty();
  if (hasBody_) coverage_.paint(near_, tileX, tileY, glow_);
  return true;
}

void StrokeShape::rowOfTile(int y, TileRowShares& shares) const {
  const auto fetch = [](bool isThere, const std::int16_t* from, auto& row) {
    isThere ? std::memcpy(row, from, sizeof row) : std::memset(row, 0, sizeof row);
  };
  if (!glow_) {
    fetch(hasBody_, coverage_.bodyRow(y), shares.body);
    fetch(false, nullptr, shares.core);
    return;
  }
  TileRowMasks masks;
  fetch(hasBody_, coverage_.bodyRow(y), masks.body);
  fetch(hasBody_, coverage_.coreRow(y), masks.core);
  hasWide_ ? wide_.rowOfTile(y, masks.wideGlow) : fetch(false, nullptr, masks.wideGlow);
  hasNarrow_ ? narrow_.rowOfTile(y, masks.narrowGlow) : fetch(false, nullptr, masks.narrowGlow);
  joinGlowingRow(masks, shares);
}

}  // namespace render
