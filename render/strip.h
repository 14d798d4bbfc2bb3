#pragma once

#include <span>
#include <vector>

#include "render/curve_piece.h"

namespace render {

/// A CurvePiece seen along its chord, in cells of some size from the centre of the cell in the
/// canvas's top left corner: a gently bent strip. Where the curve runs, at `s` cells along the
/// chord, is a parabola, so that a cell's distance to it needs neither roots nor divisions.
struct Strip {
  float startX, startY;
  float endX, endY;
  float alongX, alongY;  // The chord's direction; (-alongY, alongX) is across.
  float length;          // Of the chord.
  float bend;            // The curve lies bend * s * (length - s) across from the chord.
  float tilt;            // Of the curve against the chord at its ends, up at the start, a tangent.
  float bodyHalf, coreHalf;
  float startExtra, endExtra;   // How far beyond its ends the strip is continued.
  bool startsRound, endsRound;  // The piece's end is a whole disc there.
  // The joint with the strip before: how far the stroke turns there, radians, and whether it is
  // sharp, or bends more sharply than the stroke is wide.
  float turn;
  bool isCorner;
};

/// The strips of a stroke's pieces, one for each, in cells of one pixel.
void appendStrips(std::span<const CurvePiece> pieces, std::vector<Strip>& strips);

}  // namespace render
