#include "render/distance_field.h"

#include <algorithm>
#include <cmath>

#include "render/local_piece.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/distance_field.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using D = hn::CappedTag<float, 16>;
using V = hn::Vec<D>;

HWY_INLINE V distanceToLine(D d, const LocalPiece& p, V qx, V qy) {
  const V zero = hn::Zero(d), one = hn::Set(d, 1.0f);
  const V cx = hn::Set(d, p.chordX), cy = hn::Set(d, p.chordY);
  V t = hn::Mul(hn::Add(hn::Mul(qx, cx), hn::Mul(qy, cy)), hn::Set(d, p.inverseChord2));
  t = hn::Min(hn::Max(t, zero), one);
  const V ex = hn::Sub(qx, hn::Mul(t, cx));
  const V ey = hn::Sub(qy, hn::Mul(t, cy));
  return hn::Sqrt(hn::Add(hn::Mul(ex, ex), hn::Mul(ey, ey)));
}

HWY_INLINE V distanceToCurve(D d, const LocalPiece& p, V qx, V qy) {
  const V zero = hn::Zero(d), one = hn::Set(d, 1.0f), two = hn::Set(d, 2.0f);
  const V ax = hn::Set(d, p.speedX), ay = hn::Set(d, p.speedY);
  const V bx = hn::Set(d, p.bendX), by = hn::Set(d, p.bendY);
  V t = hn::Mul(hn::Add(hn::Mul(qx, hn::Set(d, p.chordX)), hn::Mul(qy, hn::Set(d, p.chordY))),
                hn::Set(d, p.inverseChord2));
  t = hn::Min(hn::Max(t, zero), one);
  // One step of Newton's method towards the foot of the perpendicular.
  const V tbx = hn::Mul(t, bx), tby = hn::Mul(t, by);
  V ex = hn::Sub(hn::Mul(t, hn::Add(ax, tbx)), qx);
  V ey = hn::Sub(hn::Mul(t, hn::Add(ay, tby)), qy);
  const V sx = hn::Add(ax, hn::Mul(two, tbx));
  const V sy = hn::Add(ay, hn::Mul(two, tby));
  const V along = hn::Add(hn::Mul(ex, sx), hn::Mul(ey, sy));
  const V bend = hn::Mul(two, hn::Add(hn::Mul(ex, bx), hn::Mul(ey, by)));
  const V slope2 = hn::Add(hn::Mul(sx, sx), hn::Mul(sy, sy));
  const V divisor = hn::Max(hn::Add(slope2, bend), hn::Set(d, p.smallestSlope2));
  t = hn::Min(hn::Max(hn::Sub(t, hn::Div(along, divisor)), zero), one);
  ex = hn::Sub(hn::Mul(t, hn::Add(ax, hn::Mul(t, bx))), qx);
  ey = hn::Sub(hn::Mul(t, hn::Add(ay, hn::Mul(t, by))), qy);
  return hn::Sqrt(hn::Add(hn::Mul(ex, ex), hn::Mul(ey, ey)));
}

template <bool kBent, bool kCore>
void spreadRow(const LocalPiece& p, float y, int first, int end, float* body, float* core) {
  const D d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const V qy = hn::Set(d, y - p.startY);
  const V painted = hn::Set(d, 0.5f);
  for (int x = first / lanes * lanes; x < end; x += lanes) {
    const V before = hn::Load(d, body + x);
    V least = before;
    if constexpr (kCore) least = hn::Min(least, hn::Load(d, core + x));
    if (hn::AllTrue(d, hn::Ge(least, painted))) continue;
    const V qx = hn::Sub(hn::Iota(d, static_cast<float>(x)), hn::Set(d, p.startX));
    const V distance = kBent ? distanceToCurve(d, p, qx, qy) : distanceToLine(d, p, qx, qy);
    const V deep = hn::Min(hn::Sub(hn::Set(d, p.bodyHalf), distance), hn::Set(d, p.bodyCap));
    hn::Store(hn::Max(before, deep), d, body + x);
    if constexpr (kCore) {
      const V deepCore = hn::Min(hn::Sub(hn::Set(d, p.coreHalf), distance), hn::Set(d, p.coreCap));
      hn::Store(hn::Max(hn::Load(d, core + x), deepCore), d, core + x);
    }
  }
}

void spreadLineRow(const LocalPiece& p, float y, int first, int end, float* body, float* core) {
  core ? spreadRow<false, true>(p, y, first, end, body, core)
       : spreadRow<false, false>(p, y, first, end, body, core);
}

void spreadCurveRow(const LocalPiece& p, float y, int first, int end, float* body, float* core) {
  core ? spreadRow<true, true>(p, y, first, end, body, core)
       : spreadRow<true, false>(p, y, first, end, body, core);
}

void coverageRow(const float* depths, std::int16_t full, std::int16_t* coverage) {
  const D d;
  const hn::Rebind<std::int32_t, D> di;
  const hn::Rebind<std::int16_t, D> ds;
  const V zero = hn::Zero(d), one = hn::Set(d, 1.0f), half = hn::Set(d, 0.5f);
  for (int x = 0; x < DistanceField::kSide; x += static_cast<int>(hn::Lanes(d))) {
    const V share = hn::Min(hn::Max(hn::Add(hn::Load(d, depths + x), half), zero), one);
    const auto whole =
        hn::ConvertTo(di, hn::Add(hn::Mul(share, hn::Set(d, static_cast<float>(full))), half));
    hn::StoreU(hn::DemoteTo(ds, whole), ds, coverage + x);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(spreadLineRow);
HWY_EXPORT(spreadCurveRow);
HWY_EXPORT(coverageRow);

namespace {

constexpr float kOutside = -1e9f;

LocalPiece localPiece(const CurvePiece& p, double left, double top, double step) {
  const double perPx = 1 / step;
  const auto local = [&](double v) { return static_cast<float>(v * perPx); };
  const double cx = p.x2 - p.x0, cy = p.y2 - p.y0;
  const double chord2 = (cx * cx + cy * cy) * perPx * perPx;
  LocalPiece result{};
  result.startX = static_cast<float>((p.x0 - left) * perPx - 0.5);
  result.startY = static_cast<float>((p.y0 - top) * perPx - 0.5);
  result.chordX = local(cx);
  result.chordY = local(cy);
  result.inverseChord2 = chord2 > 1e-12 ? static_cast<float>(1 / chord2) : 0;
  result.speedX = local(2 * (p.x1 - p.x0));
  result.speedY = local(2 * (p.y1 - p.y0));
  result.bendX = local(p.x0 - 2 * p.x1 + p.x2);
  result.bendY = local(p.y0 - 2 * p.y1 + p.y2);
  result.smallestSlope2 = static_cast<float>(std::max(chord2 * 0.25, 1e-6));
  result.bodyHalf = local(p.bodyHalf);
  result.coreHalf = local(p.coreHalf);
  result.bodyCap = 2 * result.bodyHalf - 0.5f;
  result.coreCap = 2 * result.coreHalf - 0.5f;
  return result;
}

/// The cells of row `y` that a piece with paint up to `reach` cells from its corners can touch.
struct Span {
  int first = 0;
  int end = 0;
};

Span spanOfRow(const LocalPiece& p, float y, float reach) {
  // The chord's part that is near enough in y, then `reach` to both sides of it.
  float t0 = 0, t1 = 1;
  const float above = y - reach - p.startY, below = y + reach - p.startY;
  if (std::abs(p.chordY) > 1e-3f) {
    const float a = above / p.chordY, b = below / p.chordY;
    t0 = std::max(t0, std::min(a, b));
    t1 = std::min(t1, std::max(a, b));
    if (t0 > t1) return {};
  } else if (above > 0.01f || below < -0.01f) {
    return {};
  }
  const float x0 = p.startX + t0 * p.chordX, x1 = p.startX + t1 * p.chordX;
  const float side = static_cast<float>(DistanceField::kSide);
  const float left = std::clamp(std::min(x0, x1) - reach, 0.0f, side);
  const float right = std::clamp(std::max(x0, x1) + reach + 1, 0.0f, side);
  return {static_cast<int>(left), static_cast<int>(right)};
}

}  // namespace

void DistanceField::reset(double left, double top, double step, bool withCore) {
  left_ = left;
  top_ = top;
  step_ = step;
  withCore_ = withCore;
  firstRow_ = endRow_ = 0;
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
  const LocalPiece p = localPiece(piece, left_, top_, step_);
  // The curve leaves its chord by at most half the control point's distance; paint fades out over
  // half a cell more.
  const float bulge = piece.isStraight ? 0 : 0.25f * std::hypot(p.bendX, p.bendY);
  const float reach = p.bodyHalf + bulge + 0.51f;
  const float side = static_cast<float>(kSide);
  const float highest = std::min(p.startY, p.startY + p.chordY) - reach;
  const float lowest = std::max(p.startY, p.startY + p.chordY) + reach + 1;
  const int first = static_cast<int>(std::clamp(highest, 0.0f, side));
  const int end = static_cast<int>(std::clamp(lowest, 0.0f, side));
  if (first >= end) return;
  openRows(first, end);
  const auto row =
      piece.isStraight ? HWY_DYNAMIC_DISPATCH(spreadLineRow) : HWY_DYNAMIC_DISPATCH(spreadCurveRow);
  for (int y = first; y < end; ++y) {
    const Span span = spanOfRow(p, static_cast<float>(y), reach);
    if (span.first >= span.end) continue;
    row(p, static_cast<float>(y), span.first, span.end, body_ + y * kSide,
        withCore_ ? core_ + y * kSide : nullptr);
  }
}

void DistanceField::bodyCoverage(int y, std::int16_t full, std::int16_t* coverage) const {
  HWY_DYNAMIC_DISPATCH(coverageRow)(body_ + y * kSide, full, coverage);
}

void DistanceField::coreCoverage(int y, std::int16_t full, std::int16_t* coverage) const {
  HWY_DYNAMIC_DISPATCH(coverageRow)(core_ + y * kSide, full, coverage);
}

}  // namespace render
#endif
