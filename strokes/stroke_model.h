#pragma once

#include <span>
#include <vector>

#include "strokes/stroke_point.h"
#include "strokes/stroke_points.h"

namespace strokes {

/// A quadratic Bezier curve of one width.
struct StrokeSegment {
  Point start;
  Point control;
  Point end;
  double width = 0;  ///< Reference units, as StrokePoint::w.

  friend bool operator==(const StrokeSegment&, const StrokeSegment&) = default;
};

namespace StrokeModel {

/// Smooths a polyline into curves that run through the midpoints of its sides, with its corners as
/// control points: as many segments as points, each starting exactly where the one before ends.
/// The first and the last are straight halves of a side with the mean width of its two points; a
/// single point gives one segment of no length.
std::vector<StrokeSegment> segments(const StrokePoints& points);

}  // namespace StrokeModel
}  // namespace strokes
