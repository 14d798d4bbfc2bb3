#pragma once

#include <cstdint>

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

/// How much of its body's colour and of its core's a stroke gives each pixel of a tile before it
/// fades, 0 to kFull. Undefined above the first row and below the last that holds any.
struct StrokeShares {
  static constexpr int kHalf = PaintTile::kSide / 2;

  alignas(64) std::int16_t body[PaintTile::kSide][PaintTile::kSide];
  alignas(64) std::int16_t core[PaintTile::kSide][PaintTile::kSide];
  /// Of the left and of the right half: the rows, the first in the lowest bit, that hold any. A row
  /// of the core's is one of the body's too.
  std::uint64_t bodyRows[2] = {};
  std::uint64_t coreRows[2] = {};
};

/// Rows of shares of half a tile's columns, one after the other.
struct ShareRows {
  const std::int16_t* shares = nullptr;  ///< Vectors of them aligned.
  int first = 0;
  int end = 0;
};

/// Half the columns of a tile.
struct ShareColumns {
  ShareRows body;
  ShareRows core;
};

// Each works out what the function that lays such a stroke would lay.

void mixGlowing(const GlowRows& wide, const GlowRows& narrow, const SharpMasks& sharp,
                StrokeShares& shares);
void mixPlain(const SharpMasks& sharp, StrokeShares& shares);

// Each lays a stroke, fading by `alpha`, 0 to 1, over what is painted in the tile.

/// A glowing one: two passes, each a blurred and a sharp layer of the body's colour, and the core
/// over them.
void layGlowing(const GlowRows& wide, const GlowRows& narrow, const SharpMasks& sharp,
                const StrokeColors& colors, double alpha, PaintTile& tile);

/// One without glow.
void layPlain(const SharpMasks& sharp, const StrokeColors& colors, double alpha, PaintTile& tile);

/// One of which the shares are known, by halves of the tile: the same, bit for bit.
void layShares(const ShareColumns (&halves)[2], const StrokeColors& colors, double alpha,
               PaintTile& tile);

}  // namespace render
