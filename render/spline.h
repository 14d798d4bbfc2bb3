#pragma once

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

/// The 64 pixels of a tile's row from its 64 / cellPx cells, with two more before and after them.
void expandCells(const std::int16_t* cells, int cellPx, std::int16_t* pixels);

}  // namespace render
