#pragma once

#include <cstddef>
#include <cstdint>

#include "render/paint_tile.h"

namespace render {

/// The weights, in 1/32768, of four neighbouring cells for one pixel between the middle two.
struct SplineWeights {
  std::int16_t weight[4];
};

/// For pixel `i` of a cell that is `cellPx` pixels wide, a power of two >= 2, <= 64.
const SplineWeights& splineWeights(int cellPx, int i);

/// The first of the four cells that pixel `i` of a cell takes part of, relative to that cell.
inline int firstSplineCell(int cellPx, int i) {
  return i < cellPx / 2 ? -2 : -1;
}

/// Expands rows of a tile's cells, `stride` apart, to 64 pixels each: 64 / cellPx cells, with two
/// more before and after them; five more must be readable. isDark[i]: which halves of row i are all
/// zero, the left one in bit 0, the right one in bit 1.
void expandCells(const std::int16_t* cells, std::ptrdiff_t stride, int rows, int cellPx,
                 std::int16_t (*pixels)[PaintTile::kSide], std::uint8_t* isDark);

}  // namespace render
