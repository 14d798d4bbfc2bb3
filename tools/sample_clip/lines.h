#pragma once

#include <string>
#include <vector>

#include "strokes/stroke_point.h"

namespace sample_clip {

/// In canvas heights.
double lengthOnCanvas(strokes::Point a, strokes::Point b);
double lengthOf(const std::vector<strokes::Point>& line);

/// A smooth line through `knots` (Catmull-Rom), finely sampled.
std::vector<strokes::Point> curveThrough(const std::vector<strokes::Point>& knots);

/// The point that lies the share `t` of its length along a line.
strokes::Point alongLine(const std::vector<strokes::Point>& line, double t);

/// A letter in a box of its own, x and y from 0 to 1; ascenders and descenders stick out.
struct Letter {
  std::string name;
  std::vector<strokes::Point> knots;
};

/// Those that can be written without lifting the pen.
const std::vector<Letter>& alphabet();

/// The one of that name, which must be there.
const Letter& letter(const std::string& name);

}  // namespace sample_clip
