#include "render/stroke_shape.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "render/compositing.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// The blur radii of the two glow passes in reference units; a radius is two sigmas.
constexpr double kWideSigma = 30.0 / 2;
constexpr double kNarrowSigma = 10.0 / 2;
PixelRect boxOf(const CurvePiece& p, double margin) {
  const auto [left, right] = std::minmax({p.x0, p.x1, p.x2});
  const auto [top, bottom] = std::minmax({p.y0, p.y1, p.y2});
  const double m = p.bodyHalf + margin;
  return {static_cast<int>(std::floor(left - m)), static_cast<int>(std::floor(top - m)),
          static_cast<int>(std::ceil(right + m)), static_cast<int>(std::ceil(bottom + m))};
}

PixelRect tileRect(int tileX, int tileY) {
  return {tileX * kTile, tileY * kTile, (tileX + 1) * kTile, (tileY + 1) * kTile};
}

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
  for (const CurvePiece& piece : pieces_) bounds_ = bounds_.united(boxOf(piece, reach_));
  bounds_ = bounds_.intersected(area);
  if (glow_ && !bounds_.isEmpty()) {
    wide_.build(pieces_, kWideSigma * unitPx, bounds_);
    narrow_.build(pieces_, kNarrowSigma * unitPx, bounds_);
  }
}

bool StrokeShape::openTile(int tileX, int tileY) {
  const PixelRect tile = tileRect(tileX, tileY);
  if (tile.intersected(bounds_).isEmpty()) return false;
  bool isReached = false;
  near_.clear();
  for (const CurvePiece& piece : pieces_) {
    if (boxOf(piece, reach_).intersected(tile).isEmpty()) continue;
    isReached = true;
    if (!boxOf(piece, 2).intersected(tile).isEmpty()) near_.push_back(piece);
  }
  if (!isReached) return false;
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
