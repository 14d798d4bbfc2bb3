// The distance of points to a LocalPiece, once per instruction set.

#if defined(RENDER_CURVE_DISTANCE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RENDER_CURVE_DISTANCE_INL_H_
#undef RENDER_CURVE_DISTANCE_INL_H_
#else
#define RENDER_CURVE_DISTANCE_INL_H_
#endif

#include "hwy/highway.h"
#include "render/local_piece.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using F = hn::CappedTag<float, 16>;
using Floats = hn::Vec<F>;

/// `qx`, `qy`: the points, relative to the piece's start.
HWY_INLINE Floats distanceToLine(const LocalPiece& p, Floats qx, Floats qy) {
  const F f;
  const Floats cx = hn::Set(f, p.chordX), cy = hn::Set(f, p.chordY);
  Floats t = hn::Mul(hn::Add(hn::Mul(qx, cx), hn::Mul(qy, cy)), hn::Set(f, p.inverseChord2));
  t = hn::Min(hn::Max(t, hn::Zero(f)), hn::Set(f, 1.0f));
  const Floats ex = hn::Sub(qx, hn::Mul(t, cx));
  const Floats ey = hn::Sub(qy, hn::Mul(t, cy));
  return hn::Sqrt(hn::Add(hn::Mul(ex, ex), hn::Mul(ey, ey)));
}

/// From the projection on the chord, one step of Newton's method to the foot of the perpendicular:
/// pieces are bent so little that this is within a thousandth of a cell near the stroke's border.
HWY_INLINE Floats distanceToCurve(const LocalPiece& p, Floats qx, Floats qy) {
  const F f;
  const Floats zero = hn::Zero(f), one = hn::Set(f, 1.0f), two = hn::Set(f, 2.0f);
  const Floats vx = hn::Set(f, p.speedX), vy = hn::Set(f, p.speedY);
  const Floats bx = hn::Set(f, p.bendX), by = hn::Set(f, p.bendY);
  Floats t = hn::Mul(hn::Add(hn::Mul(qx, hn::Set(f, p.chordX)), hn::Mul(qy, hn::Set(f, p.chordY))),
                     hn::Set(f, p.inverseChord2));
  t = hn::Min(hn::Max(t, zero), one);
  const Floats tbx = hn::Mul(t, bx), tby = hn::Mul(t, by);
  Floats ex = hn::Sub(hn::Mul(t, hn::Add(vx, tbx)), qx);
  Floats ey = hn::Sub(hn::Mul(t, hn::Add(vy, tby)), qy);
  const Floats sx = hn::Add(vx, hn::Mul(two, tbx));
  const Floats sy = hn::Add(vy, hn::Mul(two, tby));
  const Floats along = hn::Add(hn::Mul(ex, sx), hn::Mul(ey, sy));
  const Floats bend = hn::Mul(two, hn::Add(hn::Mul(ex, bx), hn::Mul(ey, by)));
  const Floats slope2 = hn::Add(hn::Mul(sx, sx), hn::Mul(sy, sy));
  const Floats divisor = hn::Max(hn::Add(slope2, bend), hn::Set(f, p.smallestSlope2));
  t = hn::Min(hn::Max(hn::Sub(t, hn::Div(along, divisor)), zero), one);
  ex = hn::Sub(hn::Mul(t, hn::Add(vx, hn::Mul(t, bx))), qx);
  ey = hn::Sub(hn::Mul(t, hn::Add(vy, hn::Mul(t, by))), qy);
  return hn::Sqrt(hn::Add(hn::Mul(ex, ex), hn::Mul(ey, ey)));
}

template <bool kBent>
HWY_INLINE Floats distanceTo(const LocalPiece& p, Floats qx, Floats qy) {
  if constexpr (kBent) return distanceToCurve(p, qx, qy);
  return distanceToLine(p, qx, qy);
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
