#pragma once

#include <span>
#include <vector>

#include "render/canvas_mapping.h"
#include "render/pixel_rect.h"
#include "strokes/stroke_points.h"

namespace render {

/// A short, gently bent part of a stroke: a quadratic Bezier curve in device pixels, of constant
/// width with round ends. Short enough for single precision relative to a tile nearby, bent so
/// little that, seen from its chord, it is a parabola.
struct CurvePiece {
  double x0 = 0, y0 = 0;  ///< Start.
  double x1 = 0, y1 = 0;  ///< Control point.
  double x2 = 0, y2 = 0;  ///< End.
  double bodyHalf = 0;    ///< Half the width of the stroke, device pixels.
  double coreHalf = 0;    ///< Half the width of the light core, device pixels.
  bool isStraight = false;

  /// How far beyond the start and the end, along the curve's direction there, the round end can
  /// show, pixels: the neighbouring pieces paint over the rest of it.
  double startExtra = kWholeEnd;
  double endExtra = kWholeEnd;
  static constexpr double kWholeEnd = 1e9;

  /// The pixels that its paint, grown by `margin` pixels to every side, can touch.
  PixelRect box(double margin) const;
};

/// Pieces that join smoothly overlap this much, pixels.
inline constexpr double kJointPx = 0.5;

/// The light core's share of a stroke's width.
inline constexpr double kCoreWidth = 0.4;

/// Appends the pieces of the stroke through `points` whose paint comes within `reach` pixels of
/// `area`, all with whole ends. Segments with a coordinate or width that is not finite are left
/// out; far coordinates and huge widths are drawn as if they ended well outside the area.
void appendCurvePieces(const strokes::StrokePoints& points, const CanvasMapping& mapping,
                       const PixelRect& area, double reach, std::vector<CurvePiece>& pieces);

/// Shortens the ends of neighbouring pieces that join smoothly.
void trimJoints(std::span<CurvePiece> pieces);

}  // namespace render
