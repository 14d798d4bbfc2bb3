#pragma once

#include <algorithm>

#include "pixels/size.h"

namespace render {

/// From the canvas's own coordinates and width units to device pixels.
struct CanvasMapping {
  double width = 0;        ///< Of the canvas, in device pixels.
  double height = 0;       ///< Of the canvas, in device pixels.
  double unit = 1;         ///< Logical points per reference unit of width.
  double deviceScale = 1;  ///< Device pixels per logical point.

  /// The height, in logical points, of the canvas that widths are meant for.
  static constexpr double kReferenceHeight = 800;

  /// `size`: the canvas in logical points.
  static CanvasMapping of(pixels::Size size, double deviceScale) {
    return {size.width * deviceScale, size.height * deviceScale, size.height / kReferenceHeight,
            deviceScale};
  }

  /// A line `units` wide, in device pixels: never thinner than one logical point.
  double linePx(double units) const { return std::max(units * unit, 1.0) * deviceScale; }

  friend bool operator==(const CanvasMapping&, const CanvasMapping&) = default;
};

}  // namespace render
