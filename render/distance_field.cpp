#include "render/distance_field.h"

#include <algorithm>
#include <cmath>

#include "render/local_piece.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/distance_field.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/curve_distance-inl.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

template <bool kBent, bool kCore>
void spreadRow(const LocalPiece& p, float y, int left, CellSpan span, float* body, float* core) {
  const F f;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const Floats qy = hn::Set(f, y - p.startY);
  const Floats deepEnough = hn::Set(f, DistanceField::kDepthKept);
  for (int x = span.first / lanes * lanes; x < span.end; x += lanes) {
    const Floats before = hn::Load(f, body + x);
    Floats least = before;
    if constexpr (kCore) least = hn::Min(least, hn::Load(f, core + x));
    if (hn::AllTrue(f, hn::Ge(least, deepEnough))) continue;
    const Floats qx = hn::Sub(hn::Iota(f, static_cast<float>(left + x)), hn::Set(f, p.startX));
    const Floats distance = distanceTo<kBent>(p, qx, qy);
    hn::Store(hn::Max(before, hn::Sub(hn::Set(f, p.bodyHalf), distance)), f, body + x);
    if constexpr (kCore) {
      const Floats coreDepth = hn::Sub(hn::Set(f, p.coreHalf), distance);
      hn::Store(hn::Max(hn::Load(f, core + x), coreDepth), f, core + x);
    }
  }
}

/// `body`, `core`: row `rows.first`; `core` may be null.
template <bool kBent, bool kCore>
void spreadRows(const LocalPiece& p, float reach, CellSpan rows, int left, int columns, float* body,
                float* core) {
  for (int y = rows.first; y < rows.end; ++y) {
    const CellSpan span = cellsNear(p, y, reach, left, left + columns);
    if (span.first < span.end) {
      spreadRow<kBent, kCore>(p, static_cast<float>(y), left, {span.first - left, span.end - left},
                              body, core);
    }
    body += DistanceField::stride();
    if constexpr (kCore) core += DistanceField::stride();
  }
}

void spreadPiece(const LocalPiece& p, float reach, CellSpan rows, int left, int columns,
                 float* body, float* core) {
  if (core) {
    p.isStraight ? spreadRows<false, true>(p, reach, rows, left, columns, body, core)
                 : spreadRows<true, true>(p, reach, rows, left, columns, body, core);
  } else {
    p.isStraight ? spreadRows<false, false>(p, reach, rows, left, columns, body, core)
                 : spreadRows<true, false>(p, reach, rows, left, columns, body, core);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(spreadPiece);

namespace {

constexpr float kOutside = -1e9f;

}  // namespace

void DistanceField::reset(int left, int top, bool withCore) {
  left_ = left;
  top_ = top;
  withCore_ = withCore;
  firstRow_ = endRow_ = 0;
}

void DistanceField::openRows(int first, int end) {
  const auto fill = [this](int from, int to) {
    for (int y = from; y < to; ++y) {
      std::fill_n(body_ + place(y), kSide, kOutside);
      if (withCore_) std::fill_n(core_ + place(y), kSide, kOutside);
    }
  };
  if (firstRow_ == endRow_) {
    fill(first, end);
    firstRow_ = first;
    endRow_ = end;
    return;
  }
  fill(first, firstRow_);
  fill(endRow_, end);
  firstRow_ = std::min(first, firstRow_);
  endRow_ = std::max(end, endRow_);
}

void DistanceField::spread(const LocalPiece& p) {
  const float reach = p.bodyHalf + kDepthKept;
  const CellSpan rows = rowsNear(p, reach, top_, top_ + kSide);
  if (rows.first >= rows.end) return;
  openRows(rows.first - top_, rows.end - top_);
  const int row = place(rows.first - top_);
  HWY_DYNAMIC_DISPATCH(spreadPiece)
  (p, reach, rows, left_, kSide, body_ + row, withCore_ ? core_ + row : nullptr);
}

void DistanceField::continueOutwards() {
  continueOutwards(body_);
  if (withCore_) continueOutwards(core_);
}

void DistanceField::continueOutwards(float* depths) const {
  if (firstRow_ == endRow_) return;
  for (int y = firstRow_; y < endRow_; ++y) {
    float* row = depths + place(y);
    row[-1] = 2 * row[0] - row[1];
    row[kSide] = 2 * row[kSide - 1] - row[kSide - 2];
  }
  // A single row has no slope; nothing is near a border in it either.
  const auto continueRow = [&](int y, int inner, int innermost) {
    for (int x = 0; x < kSide; ++x)
      depths[place(y) + x] = 2 * depths[place(inner) + x] - depths[place(innermost) + x];
  };
  const int last = endRow_ - 1;
  continueRow(firstRow_ - 1, firstRow_, std::min(firstRow_ + 1, last));
  continueRow(endRow_, last, std::max(last - 1, firstRow_));
}

}  // namespace render
#endif
