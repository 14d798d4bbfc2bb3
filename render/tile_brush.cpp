#include "render/tile_brush.h"

#include <cstring>

namespace render {

void KeptMasks::keep(const SharpMasks& masks) {
  firstRow_ = masks.firstRow;
  endRow_ = masks.endRow;
  hasCore_ = masks.core != nullptr;
  isThere_ = true;
  const auto count = static_cast<std::size_t>(endRow_ - firstRow_);
  rows_.resize(hasCore_ ? 2 * count : count);
  if (count == 0) return;
  std::memcpy(rows_.data(), masks.body, count * sizeof(Row));
  if (masks.core) std::memcpy(rows_.data() + count, masks.core, count * sizeof(Row));
}

SharpMasks KeptMasks::masks() const {
  if (firstRow_ == endRow_) return {nullptr, nullptr, firstRow_, endRow_};
  const auto count = static_cast<std::size_t>(endRow_ - firstRow_);
  return {rows_.data()->share, hasCore_ ? rows_[count].share : nullptr, firstRow_, endRow_};
}

SharpMasks TileBrush::sharpMasks(const StrokeShape& shape, int tileX, int tileY, KeptMasks* kept) {
  if (kept && !kept->isEmpty()) return kept->masks();
  coverage_.paint(shape.pieces_, shape.strips_, shape.index_.piecesIn(tileX, tileY), tileX, tileY,
                  shape.glow_);
  const int start = coverage_.firstRow() * PaintTile::kSide;
  const SharpMasks masks{coverage_.body() + start, shape.glow_ ? coverage_.core() + start : nullptr,
                         coverage_.firstRow(), coverage_.endRow()};
  if (kept) kept->keep(masks);
  return masks;
}

void TileBrush::lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX,
                    int tileY, PaintTile& tile, KeptMasks* kept) {
  if (!shape.isReached(tileX, tileY)) return;
  if (!shape.glow_) {
    if (shape.index_.piecesIn(tileX, tileY).empty()) return;
    layPlain(sharpMasks(shape, tileX, tileY, kept), colors, alpha, tile);
    return;
  }
  shape.wide_.prefetch(tileX, tileY);
  shape.narrow_.prefetch(tileX, tileY);
  const SharpMasks sharp = sharpMasks(shape, tileX, tileY, kept);
  const GlowRows wide = wide_.open(shape.wide_, tileX, tileY);
  const GlowRows narrow = narrow_.open(shape.narrow_, tileX, tileY);
  layGlowing(wide, narrow, sharp, colors, alpha, tile);
}

}  // namespace render
