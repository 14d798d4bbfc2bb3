#pragma once

namespace render {

/// A CurvePiece in the cells of a DistanceField: positions relative to the first cell's centre.
struct LocalPiece {
  float startX, startY;
  float chordX, chordY;  // From the start to the end.
  float inverseChord2;   // One over the chord's length squared, 0 without a chord.
  float speedX, speedY;  // Twice the way from the start to the control point.
  float bendX, bendY;    // Start - 2 control + end.
  float smallestSlope2;  // Keeps Newton's step finite near the centre of curvature.
  float bodyHalf, coreHalf;
  float bodyCap, coreCap;  // What thinner lines than a cell cannot exceed.
};

}  // namespace render
