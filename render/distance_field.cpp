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

void spreadBodyRow(const LocalPiece& p, float y, int left, CellSpan span, float* body) {
  p.isStraight ? spreadRow<false, false>(p, y, left, span, body, nullptr)
               : spreadRow<true, false>(p, y, left, span, body, nullptr);
}

void spreadBothRows(const LocalPiece& p, float y, int left, CellSpan span, float* body,
                    float* core) {
  p.isStraight ? spreadRow<false, true>(p, y, left, span, body, core)
               : spreadRow<true, true>(p, y, left, span, body, core);
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(spreadBodyRow);
HWY_EXPORT(spreadBothRows);

namespace {

constexpr float kOutside = -1e9f;

}  // namespace

void DistanceField::reset(int left, int top, double step, bool withCore) {
  left_ = left;
  top_ = top;
  step_ = step;
  withCore_ = withCore;
  columns_ = rows_ = kSide;
  firstRow_ = endRow_ = 0;
}

void DistanceField::limit(int columns, int rows) {
  columns_ = columns;
  rows_ = rows;
}

void DistanceField::openRows(int first, int end) {
  const auto fill = [this](int from, int to) {
    if (from >= to) return;
    std::fill(body_ + from * kSide, body_ + to * kSide, kOutside);
    if (withCore_) std::fill(core_ + from * kSide, core_ + to * kSide, kOutside);
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

void DistanceField::spread(const CurvePiece& piece) {
  const LocalPiece p = localPiece(piece, step_);
  const float reach = p.bodyHalf + kDepthKept;
  const CellSpan rows = rowsNear(p, reach, top_, top_ + rows_);
  if (rows.first >= rows.end) return;
  openRows(rows.first - top_, rows.end - top_);
  for (int y = rows.first; y < rows.end; ++y) {
    CellSpan span = cellsNear(p, y, reach, left_, left_ + columns_);
    if (span.first >= span.end) continue;
    span = {span.first - left_, span.end - left_};
    float* body = body_ + (y - top_) * kSide;
    if (withCore_) {
      HWY_DYNAMIC_DISPATCH(spreadBothRows)
      (p, static_cast<float>(y), left_, span, body, core_ + (y - top_) * kSide);
    } else {
      HWY_DYNAMIC_DISPATCH(spreadBodyRow)(p, static_cast<float>(y), left_, span, body);
    }
  }
}

}  // namespace render
#endif
