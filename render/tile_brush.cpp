#include "render/tile_brush.h"

#include "render/compositing.h"

namespace render {

void TileBrush::lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX,
                    int tileY, PaintTile& tile) {
  if (!shape.isReached(tileX, tileY)) return;
  const std::span<const int> numbers = shape.index_.piecesIn(tileX, tileY);
  if (numbers.empty() && !shape.glow_) return;
  if (shape.glow_) {
    shape.wide_.prefetch(tileX, tileY);
    shape.narrow_.prefetch(tileX, tileY);
  }
  coverage_.paint(shape.pieces_, shape.strips_, numbers, tileX, tileY, shape.glow_);
  const SharpMasks sharp{coverage_.body(), coverage_.core(), coverage_.firstRow(),
                         coverage_.endRow()};
  if (!shape.glow_) {
    layPlain(sharp, colors, alpha, tile);
    return;
  }
  const GlowRows wide = wide_.open(shape.wide_, tileX, tileY);
  const GlowRows narrow = narrow_.open(shape.narrow_, tileX, tileY);
  layGlowing(wide, narrow, sharp, colors, alpha, tile);
}

}  // namespace render
