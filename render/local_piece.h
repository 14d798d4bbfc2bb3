#pragma once

#include "render/curve_piece.h"

namespace render {

/// A CurvePiece in single precision, measured in cells of some size, from the centre of the cell in
/// the canvas's top left corner. Always from there, so that a cell gets the same value whichever
/// part of the canvas is painted.
struct LocalPiece {
  float startX, startY;
  float chordX, chordY;  // From the start to the end.
  float inverseChord2;   // One over the chord's length squared, 0 without a chord.
  // The curve's control point lies across from the chord's middle.
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

/// `step`: device pixels per cell.
LocalPiece localPiece(const CurvePiece& piece, double step);

}  // namespace render
