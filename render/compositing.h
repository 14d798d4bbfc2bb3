#pragma once

#include <cstdint>

#include "pixels/surface.h"
#include "render/paint_tile.h"

namespace render {

/// Joins the masks of a glowing stroke: two passes, each a blurred and a sharp layer of the body's
/// colour, and the core over them.
void joinGlowing(const GlowingMasks& masks, TileShares& shares);

/// Lays a stroke, fading by `alpha`, 0 to 1, over what is painted in the tile.
void layShares(const TileShares& shares, const StrokeColors& colors, double alpha, PaintTile& tile);

/// Lays the tile over its place among the pixels, where they have it.
void layTileOverPixels(const PaintTile& tile, int tileX, int tileY,
                       const pixels::SurfaceView& pixels);

}  // namespace render
