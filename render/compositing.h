#pragma once

#include <cstdint>

#include "pixels/surface.h"
#include "render/paint_tile.h"

namespace render {

/// Joins the masks of a glowing stroke: two passes, each a blurred and a sharp layer of the body's
/// colour, and the core over them.
void joinGlowingRow(const TileRowMasks& masks, TileRowShares& shares);

/// Fades a row: every share times `alpha`, 0 to kFull.
void fadeRow(std::int16_t alpha, TileRowShares& shares);

/// Lays one row of a stroke over row `y` of the tile.
void layOver(const StrokeColors& colors, const TileRowShares& shares, int y, PaintTile& tile);

/// Lays the tile over its place among the pixels, where they have it.
void layTileOverPixels(const PaintTile& tile, int tileX, int tileY,
                       const pixels::SurfaceView& pixels);

}  // namespace render
