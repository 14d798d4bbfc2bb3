#pragma once

#include <cstddef>
#include <cstdint>

#include "render/strip.h"

namespace render {

/// Cells to paint into, each 0 to `full`.
struct CellMask {
  std::int16_t* cells = nullptr;
  std::ptrdiff_t stride = 0;
  int left = 0;  ///< The first cell, counted from the canvas's top left corner.
  int top = 0;
  int columns = 0;  ///< At least kPaintedTogether; rows may be written that far beyond otherwise.
  int rows = 0;
  std::int16_t full = 0;

  static constexpr int kPaintedTogether = 16;
};

// Each raises cells to their share inside the shape, where that is more than before. Borders are
// taken to be straight within a cell. The same on every instruction set, bit for bit, and whichever
// part of the canvas the mask holds.

/// The strip without its round ends, painted `half` cells to both sides.
void paintStrip(const Strip& strip, float half, const CellMask& mask);

/// A disc around (x, y), as Strip::startX and startY.
void paintDisc(float x, float y, float half, const CellMask& mask);

/// The whole piece: the strip, and the discs at its round ends.
inline void paintPiece(const Strip& strip, float half, const CellMask& mask) {
  if (strip.startsRound) paintDisc(strip.startX, strip.startY, half, mask);
  if (strip.length == 0) return;
  paintStrip(strip, half, mask);
  if (strip.endsRound) paintDisc(strip.endX, strip.endY, half, mask);
}

}  // namespace render
