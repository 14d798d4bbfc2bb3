#pragma once

#include <algorithm>
#include <cmath>

#include "hwy/base.h"
#include "render/curve_piece.h"

namespace render {

/// A CurvePiece in single precision, measured in cells of some size, from the centre of the cell in
/// the canvas's top left corner. Always from there, so that a cell gets the same value whichever
/// part of the canvas is painted.
struct LocalPiece {
  float startX, startY;
  float chordX, chordY;  // From the start to the end.
  float inverseChord2;   // One over the chord's length squared, 0 without a chord.
  float speedX, speedY;  // Twice the way from the start to the control point.
  float bendX, bendY;    // Start - 2 control + end.
  float smallestSlope2;  // Keeps Newton's step finite near the centre of curvature.
  float bodyHalf, coreHalf;
  float bulge;  // How far the curve leaves its chord at most.
  bool isStraight;
  // The piece counts where -startExtra <= (q - start) . startDirection and
  // (q - end) . endDirection <= endExtra.
  float startDirectionX, startDirectionY, startExtra;
  float endDirectionX, endDirectionY, endExtra;
};

/// Cells of a row, from `first` up to but not including `end`.
struct CellSpan {
  int first = 0;
  int end = 0;
};

/// `step`: device pixels per cell.
LocalPiece localPiece(const CurvePiece& piece, double step);

// Always inlined, so that the kernels hold no code for another instruction set: going back and
// forth between the two costs more than all the rest.

/// The cell that holds a position, within [first, end].
HWY_INLINE int cellAt(float position, int first, int end) {
  const float low = static_cast<float>(first), high = static_cast<float>(end);
  const float within = position < low ? low : (position > high ? high : position);
  return first + static_cast<int>(within - low);
}

/// Narrows [left, right] to where directionX * x <= slack.
HWY_INLINE void keepUpTo(float& left, float& right, float directionX, float slack) {
  if (directionX > 1e-3f) {
    right = std::min(right, slack / directionX);
  } else if (directionX < -1e-3f) {
    left = std::max(left, slack / directionX);
  } else if (slack < -1.0f - 1e-3f * (std::abs(left) + std::abs(right))) {
    right = left - 2;
  }
}

/// The rows, among those from `first` up to `end`, that lie within `reach` cells of the piece's
/// curve.
HWY_INLINE CellSpan rowsNear(const LocalPiece& p, float reach, int first, int end) {
  const float all = reach + p.bulge;
  return {cellAt(std::min(p.startY, p.startY + p.chordY) - all, first, end),
          cellAt(std::max(p.startY, p.startY + p.chordY) + all + 1, first, end)};
}

/// The cells of row `y` that may lie as near, and count for the piece; none when first >= end.
HWY_INLINE CellSpan cellsNear(const LocalPiece& p, int y, float reach, int first, int end) {
  // The chord's part that is near enough in y, then the reach to both sides of it.
  const float all = reach + p.bulge;
  const float above = static_cast<float>(y) - all - p.startY;
  const float below = static_cast<float>(y) + all - p.startY;
  float from = 0, to = 1;
  if (std::abs(p.chordY) > 1e-3f) {
    const float a = above / p.chordY, b = below / p.chordY;
    from = std::max(from, std::min(a, b));
    to = std::min(to, std::max(a, b));
    if (from > to) return {};
  } else if (above > 0.01f || below < -0.01f) {
    return {};
  }
  const float x0 = p.startX + from * p.chordX, x1 = p.startX + to * p.chordX;
  float left = std::min(x0, x1) - all, right = std::max(x0, x1) + all;
  const float row = static_cast<float>(y);
  const float endSlack = p.endExtra + p.endDirectionX * (p.startX + p.chordX) +
                         p.endDirectionY * (p.startY + p.chordY - row);
  keepUpTo(left, right, p.endDirectionX, endSlack);
  const float startSlack =
      p.startExtra - p.startDirectionX * p.startX - p.startDirectionY * (p.startY - row);
  keepUpTo(left, right, -p.startDirectionX, startSlack);
  if (right < left) return {};
  return {cellAt(left, first, end), cellAt(right + 1, first, end)};
}

}  // namespace render
