#include "render/strip_painting.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/strip_painting.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/row_bands-inl.h"
#include "render/short_strip_painting-inl.h"
#include "render/strip_distance-inl.h"

#ifndef RENDER_STRIP_PAINTING_TASK
#define RENDER_STRIP_PAINTING_TASK
namespace render {

inline constexpr float kHalfDiagonal = 0.7072f;
inline constexpr float kSmallDiscHalf = 1.5f;
// Of single precision, a few steps of it.
inline constexpr float kRounding = 1e-6f;

/// A strip's width, of its body or of its core.
struct StripBreadth {
  float half;
  float perDoubleHalf;  // One over the width.
};

/// What stays the same for all cells of a strip.
struct StripTask {
  Strip strip;
  StripBreadth body, core;
  float bulge;        // The curve's largest distance from the chord.
  float cosine;       // Of the tilt at the ends.
  float borderReach;  // A border farther from a cell's centre leaves it whole.
  float smaller;      // The border's unit normal along the axis that it is farther from.
  float perCorner, perSide;
  float full;
};

}  // namespace render
#endif

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

using Small = hn::Rebind<std::int16_t, F>;

/// `share`: 0 to 32767, to be rounded.
HWY_INLINE void raise(Floats share, std::int16_t* cell) {
  // Next to 2^23 a float's last bit is one: cheaper than a conversion that also minds overflows.
  const Ints i32;
  const float two23 = 8388608.0f;
  const auto bits = hn::BitCast(i32, hn::Add(share, hn::Set(F(), two23)));
  const auto value = hn::DemoteTo(Small(), hn::Sub(bits, hn::BitCast(i32, hn::Set(F(), two23))));
  hn::StoreU(hn::Max(hn::LoadU(Small(), cell), value), Small(), cell);
}

/// The share of a cell, 0 to full, beyond a straight border that its centre is `away` from, on this
/// side of it.
HWY_INLINE Floats shareBeyond(const StripTask& t, Floats away) {
  const F f;
  const Floats beyond = hn::Max(hn::Sub(hn::Set(f, t.borderReach), away), hn::Zero(f));
  const Floats corner = hn::Min(beyond, hn::Set(f, t.smaller));
  return hn::Add(hn::Mul(hn::Mul(corner, corner), hn::Set(f, t.perCorner)),
                 hn::Mul(hn::Sub(beyond, corner), hn::Set(f, t.perSide)));
}

template <bool kThin>
HWY_INLINE Floats shareOfBreadth(const StripTask& t, const StripBreadth& breadth,
                                 const ByStrip& place) {
  const F f;
  const Floats half = hn::Set(f, breadth.half);
  const Floats distance = sunkDistance(place, breadth.perDoubleHalf);
  const Floats depth = hn::Sub(half, distance);
  const Floats across = shareBeyond(t, hn::Abs(depth));
  Floats share =
      hn::IfThenElse(hn::Gt(depth, hn::Zero(f)), hn::Sub(hn::Set(f, t.full), across), across);
  // Not what lies beyond the far border of a thin one.
  if constexpr (kThin) share = hn::Sub(share, shareBeyond(t, hn::Add(half, distance)));
  return hn::Max(share, hn::Zero(f));
}

template <bool kBent, bool kCore, bool kThin>
HWY_INLINE void paintCells(const StripTask& t, Floats s, Floats v, std::int16_t* body,
                           std::int16_t* core) {
  const F f;
  const ByStrip place = byStrip<kBent>(t.strip, t.cosine, s, v);
  const auto share = [&](const StripBreadth& breadth) {
    return hn::IfThenElseZero(place.counts, shareOfBreadth<kThin>(t, breadth, place));
  };
  raise(share(t.body), body);
  if constexpr (kCore) {
    if (hn::AllTrue(f, hn::Ge(place.distance, hn::Set(f, t.core.half + t.borderReach)))) return;
    raise(share(t.core), core);
  }
}

/// Where a strip's rows begin and end in the mask, and what its cells' places are counted from.
struct StripRows {
  static constexpr int kMost = 64;

  alignas(64) std::int32_t first[kMost], end[kMost];  // Cells; none when first >= end.
  alignas(64) float s[kMost], v[kMost];               // Along and across, in column 0.
};

/// For `count` rows from row `top` of the strip's cells on; `across` and `along` in the first.
HWY_INLINE void findRows(const Strip& p, int top, int count, BandOfRow across, BandOfRow along,
                         const CellMask& mask, StripRows& rows) {
  const F f;
  for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(f))) {
    storeRowEnds(across, along, i, mask.columns, rows.first, rows.end);
    const Floats qy = hn::Sub(hn::Iota(f, static_cast<float>(top + i)), hn::Set(f, p.startY));
    hn::Store(hn::Sub(hn::Mul(qy, hn::Set(f, p.alongY)), hn::Set(f, p.startX * p.alongX)), f,
              rows.s + i);
    hn::Store(hn::Add(hn::Mul(qy, hn::Set(f, p.alongX)), hn::Set(f, p.startX * p.alongY)), f,
              rows.v + i);
  }
}

/// `kThin`: the borders on both sides may share cells. `core`: as far from the masks' cells as in
/// `mask` for the body; unused without.
template <bool kBent, bool kCore, bool kThin>
void paintStripRows(const StripTask& t, CellSpan span, BandOfRow across, BandOfRow along,
                    const CellMask& mask, std::int16_t* core) {
  const F f;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const Floats alongX = hn::Set(f, t.strip.alongX), alongY = hn::Set(f, t.strip.alongY);
  const int lastStart = std::max(mask.columns - lanes, 0);
  StripRows rows;
  for (int top = span.first; top < span.end; top += StripRows::kMost) {
    const int count = std::min(span.end - top, StripRows::kMost);
    findRows(t.strip, top + mask.top, count, across, along, mask, rows);
    across.centre += across.step * StripRows::kMost;
    along.centre += along.step * StripRows::kMost;
    for (int i = 0; i < count; ++i) {
      const std::ptrdiff_t row = (top + i) * mask.stride;
      for (int x = rows.first[i]; x < rows.end[i]; x += lanes) {
        x = std::min(x, lastStart);
        const Floats column = hn::Iota(f, static_cast<float>(x + mask.left));
        paintCells<kBent, kCore, kThin>(t, hn::Add(hn::Set(f, rows.s[i]), hn::Mul(column, alongX)),
                                        hn::Sub(hn::Set(f, rows.v[i]), hn::Mul(column, alongY)),
                                        mask.cells + row + x, kCore ? core + row + x : nullptr);
      }
    }
  }
}

HWY_INLINE CellSpan rowsWithin(float low, float high, int rows) {
  const float most = static_cast<float>(rows);
  if (!(high >= 0) || !(low < most)) return {};
  return {static_cast<int>(std::max(low, 0.0f)), static_cast<int>(std::min(high + 1, most))};
}

/// A strip in pixels of the canvas as one in cells.
HWY_INLINE Strip inCells(const Strip& strip, float step) {
  const float perPx = 1 / step;
  Strip p = strip;
  p.startX = (p.startX + 0.5f) * perPx - 0.5f;
  p.startY = (p.startY + 0.5f) * perPx - 0.5f;
  p.endX = (p.endX + 0.5f) * perPx - 0.5f;
  p.endY = (p.endY + 0.5f) * perPx - 0.5f;
  p.length *= perPx;
  p.bodyHalf *= perPx;
  p.coreHalf *= perPx;
  p.startExtra *= perPx;
  p.endExtra *= perPx;
  p.bend *= step;
  return p;
}

/// Counts cells from the one where the strip starts. Positions are rounded the same then whichever
/// cell the mask begins with.
HWY_INLINE void countFromStart(Strip& p, CellMask& mask) {
  const int column = static_cast<int>(p.startX), row = static_cast<int>(p.startY);
  const float x = static_cast<float>(column), y = static_cast<float>(row);
  p.startX -= x;
  p.startY -= y;
  p.endX -= x;
  p.endY -= y;
  mask.left -= column;
  mask.top -= row;
}

HWY_INLINE StripTask taskFor(const Strip& strip, float full) {
  StripTask task;
  task.strip = strip;
  task.body = {strip.bodyHalf, 0.5f / strip.bodyHalf};
  task.core = {strip.coreHalf, 0.5f / strip.coreHalf};
  task.bulge = std::abs(strip.bend) * strip.length * strip.length * 0.25f;
  task.cosine = cosineOfTilt(strip);
  const float a = std::abs(strip.alongX), b = std::abs(strip.alongY);
  const float larger = std::max(a, b);
  task.smaller = std::max(std::min(a, b), 1e-4f);
  task.borderReach = 0.5f * (larger + task.smaller);
  task.perSide = full / larger;
  task.perCorner = 0.5f * full / (larger * task.smaller);
  task.full = full;
  return task;
}

void paintStrip(const Strip& p, const CellMask& mask, std::int16_t* core) {
  const StripTask task = taskFor(p, static_cast<float>(mask.full));
  const float paint = p.bodyHalf + task.borderReach + task.bulge + kSlack;
  const float lean = std::abs(p.tilt) * paint;
  const float extra = std::max(p.startExtra, p.endExtra) + lean;
  const float reach = paint + std::abs(p.bend) * extra * (p.length + extra);
  const float middle = 0.5f * (p.length + p.endExtra - p.startExtra);
  const float halfLength = 0.5f * (p.length + p.endExtra + p.startExtra) + lean + kSlack;
  const float middleY = p.startY + middle * p.alongY;
  const float height = halfLength * std::abs(p.alongY) + reach * std::abs(p.alongX);
  const float left = static_cast<float>(mask.left), top = static_cast<float>(mask.top);
  const CellSpan rows = rowsWithin(middleY - height - top, middleY + height - top, mask.rows);
  if (rows.first >= rows.end) return;
  const float down = static_cast<float>(rows.first + mask.top) - p.startY;
  BandOfRow across{0, 0, kNoBand}, along{0, 0, kNoBand};
  if (std::abs(p.alongY) > kLevelLine) {
    const float perRow = 1 / p.alongY;
    across = {p.startX + down * p.alongX * perRow - left, p.alongX * perRow,
              reach * std::abs(perRow)};
  }
  if (std::abs(p.alongX) > kLevelLine) {
    const float perColumn = 1 / p.alongX;
    along = {p.startX + (middle - down * p.alongY) * perColumn - left, -p.alongY * perColumn,
             halfLength * std::abs(perColumn)};
  }
  const bool isThin = (core ? p.coreHalf : p.bodyHalf) < task.borderReach;
  const auto paintRows =
      core
          ? (p.bend == 0
                 ? (isThin ? paintStripRows<false, true, true> : paintStripRows<false, true, false>)
                 : (isThin ? paintStripRows<true, true, true> : paintStripRows<true, true, false>))
          : (p.bend == 0 ? (isThin ? paintStripRows<false, false, true>
                                   : paintStripRows<false, false, false>)
                         : (isThin ? paintStripRows<true, false, true>
                                   : paintStripRows<true, false, false>));
  paintRows(task, rows, across, along, mask, core);
}

/// A disc so small that its border is not straight within a cell: by samples.
void paintSmallDisc(float x, float y, float half, CellSpan rows, CellSpan columns,
                    std::int16_t* cells, const CellMask& mask) {
  constexpr int kAlong = 16;
  for (int row = rows.first; row < rows.end; ++row) {
    for (int column = columns.first; column < columns.end; ++column) {
      int inside = 0;
      for (int i = 0; i < kAlong * kAlong; ++i) {
        const auto sampleAt = [](int cell, int k) {
          return static_cast<float>(cell) - 0.5f + (static_cast<float>(k) + 0.5f) / kAlong;
        };
        const float dx = sampleAt(column + mask.left, i % kAlong) - x;
        const float dy = sampleAt(row + mask.top, i / kAlong) - y;
        if (dx * dx + dy * dy <= half * half) ++inside;
      }
      std::int16_t& cell = cells[row * mask.stride + column];
      cell = std::max(cell, static_cast<std::int16_t>(mask.full * inside / (kAlong * kAlong)));
    }
  }
}

/// The share of a cell inside a disc whose border is straight within it. `qx`, `qy`: how far its
/// centre is from the disc's along the axes.
HWY_INLINE Floats discShare(float half, Floats qx, Floats qy, Floats distance2) {
  const F f;
  const Floats zero = hn::Zero(f), one = hn::Set(f, 1.0f), tiny = hn::Set(f, 1e-4f);
  // All but the depth is as much larger than in a cell as the distance.
  const Floats larger = hn::Max(hn::Max(qx, qy), tiny), smaller = hn::Max(hn::Min(qx, qy), tiny);
  const Floats distance = hn::Sqrt(distance2);
  const Floats depth = hn::Sub(hn::Set(f, half), distance);
  const Floats reach = hn::Mul(hn::Set(f, 0.5f), hn::Add(larger, smaller));
  // In the middle a cell has no direction: still it is inside.
  const Floats length = hn::Max(distance, hn::Add(tiny, tiny));
  const Floats beyond = hn::Max(hn::Sub(reach, hn::Mul(hn::Abs(depth), length)), zero);
  const Floats corner = hn::Min(beyond, smaller);
  const Floats twice = hn::Add(smaller, smaller);
  const Floats area = hn::Add(hn::Mul(corner, corner), hn::Mul(twice, hn::Sub(beyond, corner)));
  const Floats outer = hn::Div(area, hn::Mul(twice, larger));
  return hn::IfThenElse(hn::Gt(depth, zero), hn::Sub(one, outer), outer);
}

/// `x`, `y`: the centre, counted as the mask's first cell; `cells`: laid out as the mask's.
void paintDisc(float x, float y, float half, std::int16_t* cells, const CellMask& mask) {
  const float reach = half + kHalfDiagonal;
  const float left = static_cast<float>(mask.left), top = static_cast<float>(mask.top);
  const CellSpan rows = rowsWithin(y - reach - top, y + reach - top, mask.rows);
  const CellSpan columns = rowsWithin(x - reach - left, x + reach - left, mask.columns);
  if (rows.first >= rows.end || columns.first >= columns.end) return;
  if (half < kSmallDiscHalf) return paintSmallDisc(x, y, half, rows, columns, cells, mask);
  const F f;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const Floats full = hn::Set(f, static_cast<float>(mask.full));
  // With room for rounding, so that a vector is passed over only where each cell alone would be.
  const float sure = kHalfDiagonal + kRounding * half;
  const Floats outside2 = hn::Set(f, (half + sure) * (half + sure));
  const Floats inside2 = hn::Set(f, (half - sure) * (half - sure));
  const int lastStart = std::max(mask.columns - lanes, 0);
  for (int row = rows.first; row < rows.end; ++row) {
    const Floats qy = hn::Set(f, std::abs(static_cast<float>(row + mask.top) - y));
    std::int16_t* rowCells = cells + row * mask.stride;
    for (int column = columns.first; column < columns.end; column += lanes) {
      column = std::min(column, lastStart);
      const Floats cell = hn::Iota(f, static_cast<float>(column + mask.left));
      const Floats qx = hn::Abs(hn::Sub(cell, hn::Set(f, x)));
      const Floats distance2 = hn::Add(hn::Mul(qx, qx), hn::Mul(qy, qy));
      if (hn::AllTrue(f, hn::Ge(distance2, outside2))) continue;
      const bool isInside = hn::AllTrue(f, hn::Le(distance2, inside2));
      raise(isInside ? full : hn::Mul(discShare(half, qx, qy, distance2), full), rowCells + column);
    }
  }
}

/// `isPainted`: all but its round ends.
HWY_INLINE void paintWhole(const Strip& strip, float step, bool isPainted, CellMask mask,
                           std::int16_t* core) {
  Strip p = inCells(strip, step);
  countFromStart(p, mask);
  const auto paintEnd = [&](float x, float y) {
    paintDisc(x, y, p.bodyHalf, mask.cells, mask);
    if (core) paintDisc(x, y, p.coreHalf, core, mask);
  };
  if (p.startsRound) paintEnd(p.startX, p.startY);
  if (p.length == 0) return;
  if (!isPainted) paintStrip(p, mask, core);
  if (p.endsRound) paintEnd(p.endX, p.endY);
}

void paintAll(const Strip* strips, std::size_t count, float step, const CellMask& mask,
              std::int16_t* core) {
  if (!mask.isTile) {
    for (std::size_t i = 0; i < count; ++i) paintWhole(strips[i], step, false, mask, core);
    return;
  }
  for (std::size_t i = 0; i < count; i += kMostShortStrips) {
    const Strip* some = strips + i;
    const int number = static_cast<int>(std::min<std::size_t>(count - i, kMostShortStrips));
    const std::uint32_t painted = core ? paintShortStrips<true>(some, number, mask, core)
                                       : paintShortStrips<false>(some, number, mask, nullptr);
    for (int k = 0; k < number; ++k) {
      const bool isPainted = (painted >> k & 1) != 0;
      if (isPainted && !some[k].startsRound && !some[k].endsRound) continue;
      paintWhole(some[k], step, isPainted, mask, core);
    }
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(paintAll);

void paintPieces(std::span<const Strip> strips, float step, const CellMask& bodies,
                 std::int16_t* cores) {
  HWY_DYNAMIC_DISPATCH(paintAll)(strips.data(), strips.size(), step, bodies, cores);
}

}  // namespace render
#endif
