#include "render/tile_brush.h"

#include <algorithm>

namespace render {

SharpMasks TileBrush::sharpMasks(const StrokeShape& shape, int tileX, int tileY) {
  coverage_.paint(shape.strips_, shape.index_.piecesIn(tileX, tileY), tileX, tileY, shape.glow_);
  const int start = coverage_.firstRow() * PaintTile::kSide;
  return {coverage_.body() + start, shape.glow_ ? coverage_.core() + start : nullptr,
          coverage_.firstRow(), coverage_.endRow()};
}

void TileBrush::lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX,
                    int tileY, PaintTile& tile) {
  if (!shape.isReached(tileX, tileY)) return;
  if (!shape.glow_) {
    if (shape.index_.piecesIn(tileX, tileY).empty()) return;
    layPlain(sharpMasks(shape, tileX, tileY), colors, alpha, tile);
    return;
  }
  shape.wide_.prefetch(tileX, tileY);
  shape.narrow_.prefetch(tileX, tileY);
  const SharpMasks sharp = sharpMasks(shape, tileX, tileY);
  const GlowRows wide = wide_.open(shape.wide_, tileX, tileY);
  const GlowRows narrow = narrow_.open(shape.narrow_, tileX, tileY);
  layGlowing(wide, narrow, sharp, colors, alpha, tile);
}

void TileBrush::keep(const StrokeShape& shape, int tileX, int tileY, KeptShares& kept) {
  std::fill_n(shares_.bodyRows, 2, 0);
  std::fill_n(shares_.coreRows, 2, 0);
  if (shape.isReached(tileX, tileY)) {
    const SharpMasks sharp = sharpMasks(shape, tileX, tileY);
    if (shape.glow_) {
      const GlowRows wide = wide_.open(shape.wide_, tileX, tileY);
      const GlowRows narrow = narrow_.open(shape.narrow_, tileX, tileY);
      mixGlowing(wide, narrow, sharp, shares_);
    } else {
      mixPlain(sharp, shares_);
    }
  }
  kept.keep(shares_);
}

}  // namespace render
