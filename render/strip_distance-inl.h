// The distance of points to a Strip's curve, once per instruction set.

#if defined(RENDER_STRIP_DISTANCE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RENDER_STRIP_DISTANCE_INL_H_
#undef RENDER_STRIP_DISTANCE_INL_H_
#else
#define RENDER_STRIP_DISTANCE_INL_H_
#endif

#include "hwy/highway.h"
#include "render/strip.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using F = hn::CappedTag<float, 16>;
using Floats = hn::Vec<F>;

/// How points lie to a strip.
struct ByStrip {
  Floats distance;     // From the curve.
  Floats beyond;       // How far beyond the strip's end; 0 beside it.
  hn::Mask<F> counts;  // Not farther than the strip is continued.
};

/// `s`, `v`: the points' ways along the chord and across. `cosine`: of the tilt at the ends.
template <bool kBent>
HWY_INLINE ByStrip byStrip(const Strip& p, float cosine, Floats s, Floats v) {
  const F f;
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
    const Floats shortened = hn::Add(hn::Mul(risen, hn::Set(f, 2 * p.bend)), hn::Set(f, cosine));
    distance = hn::Mul(hn::Abs(hn::Sub(v, curve)), shortened);
  } else {
    lookBeyond();
  }
  const auto counts = hn::And(hn::Le(beforeStart, hn::Set(f, p.startExtra)),
                              hn::Le(beyondEnd, hn::Set(f, p.endExtra)));
  return {distance, beyond, counts};
}

HWY_INLINE float cosineOfTilt(const Strip& p) {
  return 1 - 0.5f * p.tilt * p.tilt;
}

/// The distance from the curve, and beyond the strip's ends as much more as a circle's border sinks
/// below its tangent there, up to the fourth power. `perDoubleHalf`: one over the strip's width.
HWY_INLINE Floats sunkDistance(const ByStrip& place, float perDoubleHalf) {
  const Floats perWidth = hn::Set(F(), perDoubleHalf);
  const Floats sunk = hn::Mul(hn::Mul(place.beyond, place.beyond), perWidth);
  return hn::Add(place.distance, hn::Add(sunk, hn::Mul(hn::Mul(sunk, sunk), perWidth)));
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
