#pragma once

namespace strokes {

/// A position on the canvas: x from 0 at the left to 1 at the right edge, y from 0 at the top to 1
/// at the bottom edge.
struct Point {
  double x = 0;
  double y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

/// One point of a stroke, as the pen left it.
struct StrokePoint {
  double x = 0;  ///< 0 at the canvas's left edge, 1 at its right edge.
  double y = 0;  ///< 0 at the top edge, 1 at the bottom edge.
  double w = 0;  ///< Pen width in reference units: pixels on a canvas 800 pixels high.

  friend bool operator==(const StrokePoint&, const StrokePoint&) = default;
};

}  // namespace strokes
