#include "render/strip_painting.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/strip_painting.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/curve_distance-inl.h"

#ifndef RENDER_STRIP_PAINTING_TASK
#define RENDER_STRIP_PAINTING_TASK
namespace render {

/// What stays the same for all cells of a strip.
struct StripTask {
  Strip strip;
  float half;
  float bulge;          // The curve's largest distance from the chord.
  float cosine;         // Of the tilt at the ends.
  float perDoubleHalf;  // One over the width.
  float borderReach;    // A border farther from a cell's centre leaves it whole.
  float smaller;        // The border's unit normal along the axis that it is farther from.
  float perCorner, perSide;
};

/// Where a row of cells meets a band around a line: between centre - width and
/// centre + width, the centre moving by `step` from row to row.
struct BandOfRow {
  float centre, step, width;
};

}  // namespace render
#endif

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

using Small = hn::Rebind<std::int16_t, F>;
using Whole = hn::Rebind<std::int32_t, F>;

HWY_INLINE void raise(Floats share, std::int16_t* cell) {
  const auto value = hn::DemoteTo(Small(), hn::ConvertTo(Whole(), share));
  hn::StoreU(hn::Max(hn::LoadU(Small(), cell), value), Small(), cell);
}

/// The share of a cell, 0 to full, whose centre lies `depth` inside a straight border.
HWY_INLINE Floats shareAt(const StripTask& t, Floats depth, Floats full) {
  const F f;
  const Floats beyond = hn::Max(hn::Sub(hn::Set(f, t.borderReach), hn::Abs(depth)), hn::Zero(f));
  const Floats corner = hn::Min(beyond, hn::Set(f, t.smaller));
  const Floats outer = hn::Add(hn::Mul(hn::Mul(corner, corner), hn::Set(f, t.perCorner)),
                               hn::Mul(hn::Sub(beyond, corner), hn::Set(f, t.perSide)));
  return hn::IfThenElse(hn::Gt(depth, hn::Zero(f)), hn::Sub(full, outer), outer);
}

template <bool kBent, bool kThin>
HWY_INLINE void paintCells(const StripTask& t, Floats s, Floats v, Floats full,
                           std::int16_t* cell) {
  const F f;
  const Strip& p = t.strip;
  const Floats left = hn::Sub(hn::Set(f, p.length), s);
  Floats beforeStart = hn::Neg(s), beyondEnd = hn::Neg(left), distance = hn::Abs(v), beyond;
  const auto lookBeyond = [&] { beyond = hn::Max(hn::Max(beforeStart, beyondEnd), hn::Zero(f)); };
  if constexpr (kBent) {
    const Floats lean = hn::Mul(v, hn::Set(f, p.tilt));
    beforeStart = hn::Sub(beforeStart, lean);
    beyondEnd = hn::Sub(beyondEnd, lean);
    lookBeyond();
    // Beyond its ends the curve goes straight on.
    const Floats straightened = hn::Mul(beyond, hn::Add(beyond, hn::Add(lean, lean)));
    const Floats curve = hn::Mul(hn::Add(hn::Mul(s, left), straightened), hn::Set(f, p.bend));
    const Floats risen = hn::Add(curve, hn::Mul(beyond, hn::Set(f, p.tilt)));
    const Floats cosine = hn::Add(hn::Mul(risen, hn::Set(f, 2 * p.bend)), hn::Set(f, t.cosine));
    distance = hn::Mul(hn::Abs(hn::Sub(v, curve)), cosine);
  } else {
    lookBeyond();
  }
  const auto counts = hn::And(hn::Le(beforeStart, hn::Set(f, p.startExtra)),
                              hn::Le(beyondEnd, hn::Set(f, p.endExtra)));
  // A circle's border sinks below its tangent by this much, to the fourth power.
  const Floats perDoubleHalf = hn::Set(f, t.perDoubleHalf);
  const Floats sunk = hn::Mul(hn::Mul(beyond, beyond), perDoubleHalf);
  distance = hn::Add(distance, hn::Add(sunk, hn::Mul(hn::Mul(sunk, sunk), perDoubleHalf)));
  const Floats half = hn::Set(f, t.half);
  Floats share = shareAt(t, hn::Sub(half, distance), full);
  // Not what lies beyond the far border.
  if constexpr (kThin) share = hn::Sub(share, shareAt(t, hn::Neg(hn::Add(half, distance)), full));
  share = hn::Add(hn::Max(share, hn::Zero(f)), hn::Set(f, 0.5f));
  raise(hn::IfThenElseZero(counts, share), cell);
}

template <bool kBent, bool kThin>
void paintStripRows(const StripTask& t, CellSpan rows, BandOfRow across, BandOfRow along,
                    const CellMask& mask) {
  const F f;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const Strip& p = t.strip;
  const Floats full = hn::Set(f, static_cast<float>(mask.full));
  const Floats alongX = hn::Set(f, p.alongX), alongY = hn::Set(f, p.alongY);
  const float columns = static_cast<float>(mask.columns);
  const int lastStart = std::max(mask.columns - lanes, 0);
  std::int16_t* row = mask.cells + rows.first * mask.stride;
  for (int y = rows.first; y < rows.end; ++y, row += mask.stride) {
    const float fromX = std::max(across.centre - across.width, along.centre - along.width);
    const float toX = std::min(across.centre + across.width, along.centre + along.width);
    across.centre += across.step;
    along.centre += along.step;
    if (!(fromX < toX) || toX < 0 || fromX > columns) continue;
    const int first = fromX > 0 ? static_cast<int>(fromX) + 1 : 0;
    const int end = toX < columns ? static_cast<int>(toX) + 1 : mask.columns;
    const float qy = static_cast<float>(y) - p.startY;
    const Floats rowS = hn::Set(f, qy * p.alongY - p.startX * p.alongX);
    const Floats rowV = hn::Set(f, qy * p.alongX + p.startX * p.alongY);
    for (int x = first; x < end; x += lanes) {
      x = std::min(x, lastStart);
      const Floats column = hn::Iota(f, static_cast<float>(x));
      paintCells<kBent, kThin>(t, hn::Add(rowS, hn::Mul(column, alongX)),
                               hn::Sub(rowV, hn::Mul(column, alongY)), full, row + x);
    }
  }
}

void paintStripKernel(const StripTask& t, CellSpan rows, BandOfRow across, BandOfRow along,
                      const CellMask& mask) {
  const bool isThin = t.half < t.borderReach;
  if (t.strip.bend == 0) {
    isThin ? paintStripRows<false, true>(t, rows, across, along, mask)
           : paintStripRows<false, false>(t, rows, across, along, mask);
  } else {
    isThin ? paintStripRows<true, true>(t, rows, across, along, mask)
           : paintStripRows<true, false>(t, rows, across, along, mask);
  }
}

/// `x`, `y`: the centre, in cells of the mask.
void paintDiscKernel(float x, float y, float half, CellSpan rows, CellSpan columns,
                     const CellMask& mask) {
  const F f;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const Floats tiny = hn::Set(f, 1e-4f), full = hn::Set(f, static_cast<float>(mask.full));
  const int lastStart = std::max(mask.columns - lanes, 0);
  for (int row = rows.first; row < rows.end; ++row) {
    const Floats qy = hn::Set(f, std::abs(static_cast<float>(row) - y));
    std::int16_t* cells = mask.cells + row * mask.stride;
    for (int column = columns.first; column < columns.end; column += lanes) {
      column = std::min(column, lastStart);
      const Floats qx = hn::Abs(hn::Sub(hn::Iota(f, static_cast<float>(column)), hn::Set(f, x)));
      const Floats distance = hn::Sqrt(hn::Add(hn::Mul(qx, qx), hn::Mul(qy, qy)));
      const Floats length = hn::Max(distance, tiny);
      const Floats a = hn::Div(qx, length), b = hn::Div(qy, length);
      const Floats share = squareShare(hn::Sub(hn::Set(f, half), distance),
                                       hn::Max(hn::Max(a, b), tiny), hn::Max(hn::Min(a, b), tiny));
      raise(hn::Add(hn::Mul(share, full), hn::Set(f, 0.5f)), cells + column);
    }
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(paintStripKernel);
HWY_EXPORT(paintDiscKernel);

namespace {

// Rounding never hides a cell that is touched.
constexpr float kSlack = 0.1f;
constexpr float kFar = 1e9f;
constexpr float kHalfDiagonal = 0.7072f;
constexpr float kSmallHalf = 1.5f;
// A line this level meets a row everywhere or nowhere.
constexpr float kLevel = 1e-3f;

CellSpan rowsWithin(float low, float high, int rows) {
  const float most = static_cast<float>(rows);
  if (!(high >= 0) || !(low < most)) return {};
  return {static_cast<int>(std::max(low, 0.0f)), static_cast<int>(std::min(high + 1, most))};
}

/// A disc so small that its border is not straight within a cell: by samples.
void paintSmallDisc(float x, float y, float half, CellSpan rows, CellSpan columns,
                    const CellMask& mask) {
  constexpr int kSamples = 16;
  for (int row = rows.first; row < rows.end; ++row) {
    for (int column = columns.first; column < columns.end; ++column) {
      int inside = 0;
      for (int i = 0; i < kSamples * kSamples; ++i) {
        const auto sampleAt = [](int cell, int k) {
          return static_cast<float>(cell) - 0.5f + (static_cast<float>(k) + 0.5f) / kSamples;
        };
        const float dx = sampleAt(column, i % kSamples) - x, dy = sampleAt(row, i / kSamples) - y;
        if (dx * dx + dy * dy <= half * half) ++inside;
      }
      std::int16_t& cell = mask.cells[row * mask.stride + column];
      cell = std::max(cell, static_cast<std::int16_t>(mask.full * inside / (kSamples * kSamples)));
    }
  }
}

StripTask taskFor(const Strip& strip, float half) {
  StripTask task{};
  task.strip = strip;
  task.half = half;
  task.bulge = std::abs(strip.bend) * strip.length * strip.length * 0.25f;
  task.cosine = 1 - 0.5f * strip.tilt * strip.tilt;
  task.perDoubleHalf = 0.5f / half;
  const float a = std::abs(strip.alongX), b = std::abs(strip.alongY);
  const float larger = std::max(a, b);
  task.smaller = std::max(std::min(a, b), 1e-4f);
  task.borderReach = 0.5f * (larger + task.smaller);
  task.perSide = 1 / larger;
  task.perCorner = 0.5f / (larger * task.smaller);
  return task;
}

}  // namespace

void paintStrip(const Strip& strip, float half, const CellMask& mask) {
  StripTask task = taskFor(strip, half);
  const float full = static_cast<float>(mask.full);
  task.perSide *= full;
  task.perCorner *= full;
  Strip& p = task.strip;
  p.startX -= static_cast<float>(mask.left);
  p.startY -= static_cast<float>(mask.top);
  const float paint = half + task.borderReach + task.bulge + kSlack;
  const float lean = std::abs(p.tilt) * paint;
  const float extra = std::max(p.startExtra, p.endExtra) + lean;
  const float reach = paint + std::abs(p.bend) * extra * (p.length + extra);
  const float middle = 0.5f * (p.length + p.endExtra - p.startExtra);
  const float halfLength = 0.5f * (p.length + p.endExtra + p.startExtra) + lean + kSlack;
  const float middleY = p.startY + middle * p.alongY;
  const float height = halfLength * std::abs(p.alongY) + reach * std::abs(p.alongX);
  const CellSpan rows = rowsWithin(middleY - height, middleY + height, mask.rows);
  if (rows.first >= rows.end) return;
  const float down = static_cast<float>(rows.first) - p.startY;
  BandOfRow across{0, 0, kFar}, along{0, 0, kFar};
  if (std::abs(p.alongY) > kLevel) {
    const float perRow = 1 / p.alongY;
    across = {p.startX + down * p.alongX * perRow, p.alongX * perRow, reach * std::abs(perRow)};
  }
  if (std::abs(p.alongX) > kLevel) {
    const float perColumn = 1 / p.alongX;
    along = {p.startX + (middle - down * p.alongY) * perColumn, -p.alongY * perColumn,
             halfLength * std::abs(perColumn)};
  }
  HWY_DYNAMIC_DISPATCH(paintStripKernel)(task, rows, across, along, mask);
}

void paintDisc(float x, float y, float half, const CellMask& mask) {
  x -= static_cast<float>(mask.left);
  y -= static_cast<float>(mask.top);
  const float reach = half + kHalfDiagonal;
  const CellSpan rows = rowsWithin(y - reach, y + reach, mask.rows);
  const CellSpan columns = rowsWithin(x - reach, x + reach, mask.columns);
  if (rows.first >= rows.end || columns.first >= columns.end) return;
  if (half >= kSmallHalf) {
    HWY_DYNAMIC_DISPATCH(paintDiscKernel)(x, y, half, rows, columns, mask);
  } else {
    paintSmallDisc(x, y, half, rows, columns, mask);
  }
}

}  // namespace render
#endif
