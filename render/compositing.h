#pragma once

#include <cstdint>

#include "pixels/surface.h"
#include "render/glow_layer.h"
#include "render/paint_tile.h"

namespace render {

/// The sharp masks of a stroke in a tile: 64 values a row, 0 to kFull, from `firstRow` on, vectors
/// of them aligned. Nothing is painted in the other rows.
struct SharpMasks {
  const std::int16_t* body = nullptr;
  const std::int16_t* core = nullptr;  ///< Only of glowing strokes.
  int firstRow = 0;
  int endRow = 0;
};

// Each lays a stroke, fading by `alpha`, 0 to 1, over what is painted in the tile.

/// A glowing one: two passes, each a blurred and a sharp layer of the body's colour, and the core
/// over them.
void layGlowing(const GlowRows& wide, const GlowRows& narrow, const SharpMasks& sharp,
                const StrokeColors& colors, double alpha, PaintTile& tile);

/// One without glow.
void layPlain(const SharpMasks& sharp, const StrokeColors& colors, double alpha, PaintTile& tile);

/// Lays the tile over its place among the pixels, where they have it.
void layTileOverPixels(const PaintTile& tile, int tileX, int tileY,
                       const pixels::SurfaceView& pixels);

}  // namespace render
