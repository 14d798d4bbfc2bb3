// Where rows of cells meet the bands around a strip, once per instruction set.

#if defined(RENDER_ROW_BANDS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RENDER_ROW_BANDS_INL_H_
#undef RENDER_ROW_BANDS_INL_H_
#else
#define RENDER_ROW_BANDS_INL_H_
#endif

#include <cstdint>

#include "hwy/highway.h"
#include "render/strip_distance-inl.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

using Ints = hn::Rebind<std::int32_t, F>;
using IntVec = hn::Vec<Ints>;

/// Where a row of cells meets a band around a line: between centre - width and
/// centre + width, the centre moving by `step` from row to row.
struct BandOfRow {
  float centre, step, width;
};

/// Stores, for as many rows from row `first` on as a vector has lanes, the cells of 0 to `columns`
/// that lie within both bands: none when first >= end.
HWY_INLINE void storeRowEnds(const BandOfRow& across, const BandOfRow& along, int first,
                             int columns, std::int32_t* firsts, std::int32_t* ends) {
  const F f;
  const Ints i32;
  const Floats one = hn::Set(f, 1.0f), before = hn::Set(f, -1.0f);
  const Floats last = hn::Set(f, static_cast<float>(columns - 1));
  const auto cellAfter = [&](Floats x) {
    return hn::ConvertTo(i32, hn::Add(hn::Min(hn::Max(x, before), last), one));
  };
  const Floats row = hn::Iota(f, static_cast<float>(first));
  const auto centreOf = [&](const BandOfRow& band) {
    return hn::Add(hn::Set(f, band.centre), hn::Mul(row, hn::Set(f, band.step)));
  };
  const Floats acrossAt = centreOf(across), alongAt = centreOf(along);
  const Floats aside = hn::Set(f, across.width), ahead = hn::Set(f, along.width);
  const Floats from = hn::Max(hn::Sub(acrossAt, aside), hn::Sub(alongAt, ahead));
  const Floats to = hn::Min(hn::Add(acrossAt, aside), hn::Add(alongAt, ahead));
  hn::Store(cellAfter(from), i32, firsts + first);
  hn::Store(cellAfter(to), i32, ends + first);
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
