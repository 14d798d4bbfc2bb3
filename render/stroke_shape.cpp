#include "render/stroke_shape.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "render/compositing.h"
#include "render/distance_field.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// The blur radii of the two glow passes in reference units; a radius is two sigmas.
constexpr double kWideSigma = 30.0 / 2;
constexpr double kNarrowSigma = 10.0 / 2;
// Thinner lines than this are sampled more finely: a cell's filter would show their round ends.
constexpr double kThinHalfPx = 1;
constexpr int kFineness = 4;

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
                : 1;
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
    if (!boxOf(piece, 1).intersected(tile).isEmpty()) near_.push_back(piece);
  }
  if (!isReached) return false;
  hasWide_ = glow_ && wide_.openTile(tileX, tileY);
  hasNarrow_ = glow_ && narrow_.openTile(tileX, tileY);
  if (near_.empty() && !hasWide_ && !hasNarrow_) return false;
  std::memset(body_, 0, sizeof body_);
  std::memset(core_, 0, sizeof core_);
  if (near_.empty()) return true;
  const bool isThin = std::any_of(near_.begin(), near_.end(), [this](const CurvePiece& p) {
    return (glow_ ? p.coreHalf : p.bodyHalf) < kThinHalfPx;
  });
  isThin ? coverFinely(tileX, tileY) : coverTile(tileX, tileY);
  return true;
}

void StrokeShape::coverTile(int tileX, int tileY) {
  const auto field = std::make_unique<DistanceField>();
  field->reset(tileX * kTile, tileY * kTile, 1, glow_);
  for (const CurvePiece& piece : near_) field->spread(piece);
  for (int y = field->firstRow(); y < field->endRow(); ++y) {
    field->bodyCoverage(y, kFull, body_ + y * kTile);
    if (glow_) field->coreCoverage(y, kFull, core_ + y * kTile);
  }
}

void StrokeShape::coverFinely(int tileX, int tileY) {
  constexpr int kBlock = kTile / kFineness;
  constexpr int kSamples = kFineness * kFineness;
  const auto field = std::make_unique<DistanceField>();
  std::int16_t fine[kTile];
  const auto average = [&](auto coverage, std::int16_t* tile, int x0, int y0) {
    int sums[kBlock][kBlock] = {};
    for (int y = field->firstRow(); y < field->endRow(); ++y) {
      coverage(y, fine);
      for (int x = 0; x < kTile; ++x) sums[y / kFineness][x / kFineness] += fine[x];
    }
    for (int y = 0; y < kBlock; ++y) {
      for (int x = 0; x < kBlock; ++x)
        tile[(y0 + y) * kTile + x0 + x] = static_cast<std::int16_t>(sums[y][x] / kSamples);
    }
  };
  for (int y0 = 0; y0 < kTile; y0 += kBlock) {
    for (int x0 = 0; x0 < kTile; x0 += kBlock) {
      const int left = tileX * kTile + x0, top = tileY * kTile + y0;
      const PixelRect block{left, top, left + kBlock, top + kBlock};
      field->reset(left, top, 1.0 / kFineness, glow_);
      for (const CurvePiece& piece : near_) {
        if (!boxOf(piece, 1).intersected(block).isEmpty()) field->spread(piece);
      }
      average([&](int y, std::int16_t* row) { field->bodyCoverage(y, kFull, row); }, body_, x0, y0);
      if (!glow_) continue;
      average([&](int y, std::int16_t* row) { field->coreCoverage(y, kFull, row); }, core_, x0, y0);
    }
  }
}

void StrokeShape::rowOfTile(int y, TileRowShares& shares) const {
  if (!glow_) {
    std::memcpy(shares.body, body_ + y * kTile, sizeof shares.body);
    std::memset(shares.core, 0, sizeof shares.core);
    return;
  }
  TileRowMasks masks;
  std::memcpy(masks.body, body_ + y * kTile, sizeof masks.body);
  std::memcpy(masks.core, core_ + y * kTile, sizeof masks.core);
  if (hasWide_) {
    wide_.rowOfTile(y, masks.wideGlow);
  } else {
    std::memset(masks.wideGlow, 0, sizeof masks.wideGlow);
  }
  if (hasNarrow_) {
    narrow_.rowOfTile(y, masks.narrowGlow);
  } else {
    std::memset(masks.narrowGlow, 0, sizeof masks.narrowGlow);
  }
  joinGlowingRow(masks, shares);
}

}  // namespace render
