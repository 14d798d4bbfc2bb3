#include "render/glow_painting.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/glow_painting.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/curve_distance-inl.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

template <bool kBent>
void paintRowOf(const LocalPiece& p, float larger, float smaller, float y, int left, CellSpan span,
                std::int16_t* row) {
  const F f;
  const hn::Rebind<std::int32_t, F> whole;
  const hn::Rebind<std::int16_t, F> small;
  const Floats normalLarger = hn::Set(f, larger), normalSmaller = hn::Set(f, smaller);
  const Floats qy = hn::Set(f, y - p.startY);
  const Floats half = hn::Set(f, p.bodyHalf);
  const auto full = hn::Set(small, kGlowFull);
  for (int x = span.first - left; x < span.end - left; x += static_cast<int>(hn::Lanes(f))) {
    const auto before = hn::LoadU(small, row + x);
    if (hn::AllTrue(small, hn::Eq(before, full))) continue;
    const Floats qx = hn::Sub(hn::Iota(f, static_cast<float>(left + x)), hn::Set(f, p.startX));
    const Floats distance = distanceTo<kBent>(p, qx, qy);
    // Inside the near border, but not beyond the far one.
    const Floats near = squareShare(hn::Sub(half, distance), normalLarger, normalSmaller);
    const Floats far = squareShare(hn::Neg(hn::Add(half, distance)), normalLarger, normalSmaller);
    const Floats share = hn::Mul(hn::Max(hn::Sub(near, far), hn::Zero(f)), hn::Set(f, kGlowFull));
    const auto value = hn::DemoteTo(small, hn::ConvertTo(whole, hn::Add(share, hn::Set(f, 0.5f))));
    hn::StoreU(hn::Max(before, value), small, row + x);
  }
}

template <bool kBent>
void paintRowsOf(const LocalPiece& p, float larger, float smaller, float reach, CellSpan rows,
                 int left, int columns, std::ptrdiff_t stride, std::int16_t* row) {
  for (int y = rows.first; y < rows.end; ++y, row += stride) {
    const CellSpan span = cellsNear(p, y, reach, left, left + columns);
    if (span.first < span.end)
      paintRowOf<kBent>(p, larger, smaller, static_cast<float>(y), left, span, row);
  }
}

/// `row`: the mask's row rows.first, whose first cell is `left`.
void paintRows(const LocalPiece& p, float larger, float smaller, float reach, CellSpan rows,
               int left, int columns, std::ptrdiff_t stride, std::int16_t* row) {
  p.isStraight ? paintRowsOf<false>(p, larger, smaller, reach, rows, left, columns, stride, row)
               : paintRowsOf<true>(p, larger, smaller, reach, rows, left, columns, stride, row);
}

/// Four neighbouring cells to one; `width`: of the result.
void halveRow(const std::int16_t* above, const std::int16_t* below, int width,
              std::int16_t* result) {
  for (int x = 0; x < width; ++x)
    result[x] = static_cast<std::int16_t>(
        (above[2 * x] + above[2 * x + 1] + below[2 * x] + below[2 * x + 1] + 2) >> 2);
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(paintRows);
HWY_EXPORT(halveRow);

namespace {

constexpr float kHalfDiagonal = 0.7072f;
// The normal of a border that has no direction, at the ends of a line: midway between the axes and
// the diagonals.
constexpr float kMeanLarger = 0.9239f, kMeanSmaller = 0.3827f;

}  // namespace

void paintPiece(const CurvePiece& piece, int left, int top, double step, GlowMask& mask) {
  const LocalPiece p = localPiece(piece, step);
  const float chord = std::hypot(p.chordX, p.chordY);
  float larger = kMeanLarger, smaller = kMeanSmaller;
  if (chord > 1e-3f) {
    larger = std::max(std::abs(p.chordX), std::abs(p.chordY)) / chord;
    smaller = std::max(std::min(std::abs(p.chordX), std::abs(p.chordY)) / chord, 1e-4f);
  }
  const float reach = p.bodyHalf + kHalfDiagonal;
  const CellSpan rows = rowsNear(p, reach, top, top + mask.height());
  if (rows.first >= rows.end) return;
  HWY_DYNAMIC_DISPATCH(paintRows)
  (p, larger, smaller, reach, rows, left, mask.width(), mask.stride(), mask.row(rows.first - top));
}

void halve(const GlowMask& mask, GlowMask& half) {
  for (int y = 0; y < half.height(); ++y) HWY_DYNAMIC_DISPATCH(halveRow)
  (mask.row(2 * y), mask.row(2 * y + 1), half.width(), half.row(y));
}

}  // namespace render
#endif
