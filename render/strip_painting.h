#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

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
  std::int16_t full = 0;  ///< kFull in a tile.
  /// All cells of a PaintTile, one a pixel, rows `columns` apart. Most strips are painted in 16-bit
  /// arithmetic then: faster, their borders a few hundredths of a pixel off.
  bool isTile = false;

  static constexpr int kPaintedTogether = 16;
};

/// Neighbouring cells of a row or a column, from `first` up to but not including `end`.
struct CellSpan {
  int first = 0;
  int end = 0;
};

/// Paints pieces, round ends included, one over the other: raises the cells of `bodies` to their
/// shares inside the strokes, and those at `cores`, unless null, laid out alike, to their shares
/// inside the light cores. Borders are taken to be straight within a cell. `step`: pixels per cell.
/// The same on every instruction set, bit for bit, and whichever part of the canvas a mask holds
/// that is no tile.
void paintPieces(std::span<const Strip> strips, float step, const CellMask& bodies,
                 std::int16_t* cores);

}  // namespace render
