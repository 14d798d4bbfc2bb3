#pragma once

#include <string>
#include <vector>

#include "strokes/stroke.h"
#include "strokes/stroke_point.h"

namespace end_to_end {

/// A line that the painter of the sample clip meant.
struct MeantStroke {
  std::string name;
  int color = 0;
  std::vector<strokes::Point> points;
};

std::vector<MeantStroke> meantStrokes();

std::vector<strokes::Point> pathOf(const strokes::Stroke& stroke);

/// How far the points of one line lie from another line on average, in canvas heights.
double meanDistance(const std::vector<strokes::Point>& points,
                    const std::vector<strokes::Point>& line);

}  // namespace end_to_end
