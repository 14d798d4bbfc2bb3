#include "render/tile_brush.h"

#include <cstring>

#include "render/compositing.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;

}  // namespace

bool TileBrush::shares(const StrokeShape& shape, int tileX, int tileY, TileShares& shares) {
  if (!shape.isReached(tileX, tileY)) return false;
  const std::span<const int> numbers = shape.index_.piecesIn(tileX, tileY);
  if (numbers.empty() && !shape.glow_) return false;
  if (shape.glow_) {
    shape.wide_.prefetch(tileX, tileY);
    shape.narrow_.prefetch(tileX, tileY);
  }
  coverage_.paint(shape.pieces_, shape.strips_, numbers, tileX, tileY, shape.glow_);
  if (!shape.glow_) {
    plainShares(shares);
    return true;
  }
  wide_.open(shape.wide_, tileX, tileY);
  narrow_.open(shape.narrow_, tileX, tileY);
  for (int y = 0; y < kTile; ++y) {
    masks_.wide[y] = wide_.row(y);
    masks_.narrow[y] = narrow_.row(y);
  }
  masks_.body = coverage_.body();
  masks_.core = coverage_.core();
  masks_.firstRow = coverage_.firstRow();
  masks_.endRow = coverage_.endRow();
  joinGlowing(masks_, shares);
  return true;
}

void TileBrush::plainShares(TileShares& shares) const {
  for (int y = 0; y < kTile; ++y) {
    auto& row = shares.rows[y].body;
    if (y >= coverage_.firstRow() && y < coverage_.endRow()) {
      std::memcpy(row, coverage_.body() + y * kTile, sizeof row);
    } else {
      std::memset(row, 0, sizeof row);
    }
  }
  shares.firstCoreRow = shares.endCoreRow = 0;
}

void TileBrush::lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX,
                    int tileY, PaintTile& tile) {
  if (shares(shape, tileX, tileY, shares_)) layShares(shares_, colors, alpha, tile);
}

}  // namespace render
