#pragma once

#include <cstddef>
#include <cstdint>

#include "pixels/surface.h"
#include "render/paint_tile.h"

namespace render {

// From paint to pixels: premultiplied BGRA, 8 bits each. Both ways to the screen give the same
// bytes: a tile flattened, kept and laid later, or laid at once.

/// Writes the tile's 64 rows of 64 pixels, `strideBytes` apart.
void flattenTile(const PaintTile& tile, std::uint8_t* pixels, std::size_t strideBytes);

/// Lays `count` pixels over those at `pixels`.
void layPixels(const std::uint8_t* over, int count, std::uint8_t* pixels);

/// Lays the tile over its place among the pixels, where they have it.
void layTileOverPixels(const PaintTile& tile, int tileX, int tileY,
                       const pixels::SurfaceView& pixels);

}  // namespace render
