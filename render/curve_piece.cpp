#include "render/curve_piece.h"

#include <algorithm>
#include <cmath>

#include "strokes/stroke_model.h"

namespace render {

namespace {

constexpr double kFarthestPx = 1e7;
constexpr double kWidestPx = 65536;
// Pieces are binned by their boxes, so long diagonals would waste work.
constexpr double kLongestPx = 96;
// A curve this close to its chord is its chord: half a grey level of an edge.
constexpr double kFlatPx = 0.004;
// A curve that turns more is not the parabola that it is painted as, nor has it one direction.
constexpr double kSineOfLargestTurn = 0.16;
constexpr double kParabolaPx = 0.01;
constexpr double kParabolaShare = 4e-5;  // Of half the width, for very wide strokes.
constexpr int kDeepestSplit = 40;
// Depths are looked at this far outside the border.
constexpr double kSeenPx = 2;
// Where a bend at a joint opens the outer border no wider than this, the overlap closes it.
constexpr double kWidestGapPx = 0.25;

struct Corner {
  double x = 0;
  double y = 0;
};

Corner middle(Corner a, Corner b) {
  return {(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
}

enum class Shape { straight, bent, toBeSplit };

double lengthOf(double x, double y) {
  return std::sqrt(x * x + y * y);
}

/// How far off distances are, near the border, when the curve is taken for a parabola over its
/// chord and looked at across from the chord instead of from its nearest point.
double parabolaError(double turn, double rise, double skew, double chord, double half) {
  return turn * turn * turn * half * half / (8 * chord) + 0.4 * rise * skew / chord;
}

Shape shapeOf(const CurvePiece& p) {
  const double ax = p.x1 - p.x0, ay = p.y1 - p.y0;
  const double bx = p.x2 - p.x1, by = p.y2 - p.y1;
  const double cx = p.x2 - p.x0, cy = p.y2 - p.y0;
  const double a = lengthOf(ax, ay), b = lengthOf(bx, by), chord = lengthOf(cx, cy);
  const double longest = std::max(kLongestPx, p.bodyHalf * 0.25);
  if (chord > longest || a > longest) return Shape::toBeSplit;
  const double along = ax * cx + ay * cy, across = std::abs(cx * ay - cy * ax);
  const bool advances = along >= 0 && bx * cx + by * cy >= 0;
  if (advances && across <= 2 * kFlatPx * chord) return Shape::straight;
  if (a + b <= kFlatPx) return Shape::straight;
  const double turn = std::abs(ax * by - ay * bx) / (a * b);
  if (!(ax * bx + ay * by > 0) || turn > kSineOfLargestTurn) return Shape::toBeSplit;
  const double error =
      parabolaError(turn, across / chord, std::abs(along / chord - chord / 2), chord, p.bodyHalf);
  return error <= std::max(kParabolaPx, p.bodyHalf * kParabolaShare) ? Shape::bent
                                                                     : Shape::toBeSplit;
}

class Splitter {
 public:
  Splitter(const PixelRect& area, double reach, std::vector<CurvePiece>& pieces)
      : area_(area), reach_(reach), pieces_(pieces) {}

  void split(const CurvePiece& piece, int depth) {
    if (isOutside(piece)) return;
    const Shape shape = shapeOf(piece);
    if (shape == Shape::toBeSplit && depth < kDeepestSplit) {
      const Corner start{piece.x0, piece.y0}, control{piece.x1, piece.y1}, end{piece.x2, piece.y2};
      const Corner before = middle(start, control), after = middle(control, end);
      const Corner halfWay = middle(before, after);
      CurvePiece half = piece;
      half.x1 = before.x, half.y1 = before.y, half.x2 = halfWay.x, half.y2 = halfWay.y;
      split(half, depth + 1);
      half = piece;
      half.x0 = halfWay.x, half.y0 = halfWay.y, half.x1 = after.x, half.y1 = after.y;
      split(half, depth + 1);
      return;
    }
    pieces_.push_back(piece);
    pieces_.back().isStraight = shape != Shape::bent;
  }

 private:
  bool isOutside(const CurvePiece& p) const {
    // More than is needed, so that no piece near the area loses a neighbour.
    const double margin = p.bodyHalf + reach_ * 1.25 + 3;
    const auto [left, right] = std::minmax({p.x0, p.x1, p.x2});
    const auto [top, bottom] = std::minmax({p.y0, p.y1, p.y2});
    return right + margin < area_.left || left - margin > area_.right ||
           bottom + margin < area_.top || top - margin > area_.bottom;
  }

  PixelRect area_;
  double reach_;
  std::vector<CurvePiece>& pieces_;
};

bool isFinite(const CurvePiece& p) {
  return std::isfinite(p.x0) && std::isfinite(p.y0) && std::isfinite(p.x1) && std::isfinite(p.y1) &&
         std::isfinite(p.x2) && std::isfinite(p.y2);
}

/// The direction of the curve at its start or end, as it is painted: straight pieces go along their
/// chord. No length where it has none.
Corner direction(double fromX, double fromY, double toX, double toY, const CurvePiece& p) {
  Corner d{toX - fromX, toY - fromY};
  double length = lengthOf(d.x, d.y);
  if (p.isStraight || length < 1e-6) {
    d = {p.x2 - p.x0, p.y2 - p.y0};
    length = lengthOf(d.x, d.y);
  }
  return length < 1e-6 ? Corner{} : Corner{d.x / length, d.y / length};
}

/// True when no pixel inside of the bend comes near the centre of curvature.
bool isGentle(const CurvePiece& p) {
  if (p.isStraight) return true;
  const double ax = p.x1 - p.x0, ay = p.y1 - p.y0, bx = p.x2 - p.x1, by = p.y2 - p.y1;
  const double shorter = std::min(lengthOf(ax, ay), lengthOf(bx, by));
  const double turn = std::abs(ax * by - ay * bx) / (lengthOf(ax, ay) * lengthOf(bx, by));
  return turn * (p.bodyHalf + kSeenPx) < shorter;
}

/// How far the round end of a piece shows beyond a joint with a narrower one: until the circle
/// around the joint sinks below the narrower one's border.
double showingEnd(const CurvePiece& piece, const CurvePiece& neighbour) {
  const double excess = std::max(piece.bodyHalf - neighbour.bodyHalf, 0.0);
  return kJointPx + std::sqrt(2 * (piece.bodyHalf + kSeenPx) * excess + excess * excess);
}

/// Of two gentle ones.
void trimJoint(CurvePiece& before, CurvePiece& after) {
  if (before.x2 != after.x0 || before.y2 != after.y0) return;
  const Corner in = direction(before.x1, before.y1, before.x2, before.y2, before);
  const Corner out = direction(after.x0, after.y0, after.x1, after.y1, after);
  const double sine = std::abs(in.x * out.y - in.y * out.x);
  const double widest = std::max(before.bodyHalf, after.bodyHalf) + kSeenPx;
  if (in.x * out.x + in.y * out.y < 0.5 || sine * widest > kWidestGapPx) return;
  before.endExtra = showingEnd(before, after);
  after.startExtra = showingEnd(after, before);
}

/// As std::floor, without a call into the library.
int wholeBelow(double value) {
  const int whole = static_cast<int>(value);
  return whole - (value < whole ? 1 : 0);
}

double near(double coordinate) {
  return std::clamp(coordinate, -kFarthestPx, kFarthestPx);
}

}  // namespace

PixelRect CurvePiece::box(double margin) const {
  const double m = bodyHalf + margin;
  return {wholeBelow(std::min({x0, x1, x2}) - m), wholeBelow(std::min({y0, y1, y2}) - m),
          wholeBelow(std::max({x0, x1, x2}) + m) + 1, wholeBelow(std::max({y0, y1, y2}) + m) + 1};
}

void appendCurvePieces(const strokes::StrokePoints& points, const CanvasMapping& mapping,
                       const PixelRect& area, double reach, std::vector<CurvePiece>& pieces) {
  Splitter splitter(area, reach, pieces);
  for (const strokes::StrokeSegment& s : strokes::StrokeModel::segments(points)) {
    CurvePiece piece{s.start.x * mapping.width,   s.start.y * mapping.height,
                     s.control.x * mapping.width, s.control.y * mapping.height,
                     s.end.x * mapping.width,     s.end.y * mapping.height,
                     mapping.linePx(s.width) / 2, mapping.linePx(s.width * kCoreWidth) / 2};
    if (!isFinite(piece) || !std::isfinite(s.width)) continue;
    for (double* c : {&piece.x0, &piece.y0, &piece.x1, &piece.y1, &piece.x2, &piece.y2})
      *c = near(*c);
    piece.bodyHalf = std::min(piece.bodyHalf, kWidestPx);
    piece.coreHalf = std::min(piece.coreHalf, kWidestPx);
    splitter.split(piece, 0);
  }
}

void trimJoints(std::span<CurvePiece> pieces) {
  bool wasGentle = false;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const bool gentle = isGentle(pieces[i]);
    if (wasGentle && gentle) trimJoint(pieces[i - 1], pieces[i]);
    wasGentle = gentle;
  }
}

}  // namespace render
