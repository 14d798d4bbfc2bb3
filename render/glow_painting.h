#pragma once

#include "render/curve_piece.h"
#include "render/glow_blur.h"

namespace render {

/// Paints a piece into a mask whose cells are `step` pixels wide and whose first one is cell
/// (`left`, `top`) of the canvas: each cell's share inside it, where that is more than before.
/// Lines may be thinner than a cell. May write beyond the mask's right side, into its margin.
void paintPiece(const CurvePiece& piece, int left, int top, double step, GlowMask& mask);

/// Each cell of `half` becomes the mean of two by two cells of `mask`.
void halve(const GlowMask& mask, GlowMask& half);

}  // namespace render
