#include "render/tile_brush.h"

#include <algorithm>
#include <cstring>

#include "render/compositing.h"

namespace render {

namespace {

/// What is left of a share at a fading alpha of 0 to 1.
std::int16_t fadingShare(double alpha) {
  return static_cast<std::int16_t>(std::clamp(alpha * 32768, 0.0, static_cast<double>(kFull)));
}

void layRow(TileRowShares& shares, const StrokeColors& colors, double alpha, int y,
            PaintTile& tile) {
  if (alpha < 1) fadeRow(fadingShare(alpha), shares);
  layOver(colors, shares, y, tile);
}

}  // namespace

bool TileBrush::open(const StrokeShape& shape, int tileX, int tileY) {
  if (!shape.isReached(tileX, tileY)) return false;
  glow_ = shape.glow_;
  near_.clear();
  for (const int number : shape.index_.piecesIn(tileX, tileY))
    near_.push_back(shape.pieces_[static_cast<std::size_t>(number)]);
  hasBody_ = !near_.empty();
  hasWide_ = glow_ && wide_.open(shape.wide_, tileX, tileY);
  hasNarrow_ = glow_ && narrow_.open(shape.narrow_, tileX, tileY);
  if (hasBody_) coverage_.paint(near_, tileX, tileY, glow_);
  return hasBody_ || hasWide_ || hasNarrow_;
}

void TileBrush::row(int y, TileRowShares& shares) const {
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
  hasWide_ ? wide_.row(y, masks.wideGlow) : fetch(false, nullptr, masks.wideGlow);
  hasNarrow_ ? narrow_.row(y, masks.narrowGlow) : fetch(false, nullptr, masks.narrowGlow);
  joinGlowingRow(masks, shares);
}

bool TileBrush::shares(const StrokeShape& shape, int tileX, int tileY, TileShares& shares) {
  if (!open(shape, tileX, tileY)) return false;
  for (int y = 0; y < PaintTile::kSide; ++y) row(y, shares.rows[y]);
  return true;
}

void TileBrush::lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX,
                    int tileY, PaintTile& tile) {
  if (!open(shape, tileX, tileY)) return;
  TileRowShares shares;
  for (int y = 0; y < PaintTile::kSide; ++y) {
    row(y, shares);
    layRow(shares, colors, alpha, y, tile);
  }
}

void layShares(const TileShares& shares, const StrokeColors& colors, double alpha,
               PaintTile& tile) {
  for (int y = 0; y < PaintTile::kSide; ++y) {
    TileRowShares row = shares.rows[y];
    layRow(row, colors, alpha, y, tile);
  }
}

}  // namespace render
