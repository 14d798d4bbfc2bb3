// Prepares short, gently bent strips for painting in 16-bit arithmetic, once per instruction set.

#if defined(RENDER_SHORT_STRIPS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RENDER_SHORT_STRIPS_INL_H_
#undef RENDER_SHORT_STRIPS_INL_H_
#else
#define RENDER_SHORT_STRIPS_INL_H_
#endif

#include <cstdint>

#include "hwy/highway.h"
#include "render/paint_tile.h"
#include "render/row_bands-inl.h"
#include "render/strip_distance-inl.h"
#include "render/strip_painting.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

// Strips that are prepared together at most.
constexpr int kMostShortStrips = 16;
// Cells are painted in blocks of two rows of sixteen.
constexpr int kBlockColumns = CellMask::kPaintedTogether, kBlockRows = 2;
constexpr int kBlock = kBlockColumns * kBlockRows;
// Lengths are counted in 1/256 of a cell, the places where blocks begin in 1/65536, shares of one
// and slopes in 1/32768.
constexpr float kLengthUnit = 256, kPlaceUnit = 65536, kShareUnit = 32768;
// What counts as short: then 16 bits hold all lengths, cells beside the strip included.
constexpr float kLongest = 48, kWidestHalf = 64, kLargestExtra = 8;
// Narrower, 32768 over half the width would not fit, and both borders could share a cell.
constexpr float kNarrowestHalf = 1.1f;
// A tilt's square times half the width: three times how far off the border is at most.
constexpr float kMostTilted = 0.06f;
// What a strip is continued to the fourth power, by half its body's width cubed: eight times how
// much more a circle's border sinks than a parabola, which a body's may not.
constexpr float kMostSunk = 0.16f;
// Of a border that runs along the cells: small enough that it cuts none that it only touches.
constexpr float kSmallestSmaller = 1.0f / 256;
// Rounding never hides a cell that is touched.
constexpr float kSlack = 0.1f;
// Half the width of a band that every row lies within.
constexpr float kNoBand = 1e9f;
// A line this level meets a row everywhere or nowhere.
constexpr float kLevelLine = 1e-3f;

/// Up to 16 strips in a tile; each array has a value for each strip.
struct ShortStrips {
  alignas(64) std::int32_t length[kMostShortStrips];
  // Cells count whose way from the start, and to the end, is greater.
  alignas(64) std::int32_t before[kMostShortStrips], beyond[kMostShortStrips];
  // The curve lies bend * 2^bendShift * s * (length - s) across from the chord.
  alignas(64) std::int32_t bend[kMostShortStrips], bendShift[kMostShortStrips];
  alignas(64) std::int32_t tilt[kMostShortStrips];
  alignas(64) std::int32_t bodyHalf[kMostShortStrips], perBodyHalf[kMostShortStrips];
  alignas(64) std::int32_t coreHalf[kMostShortStrips], perCoreHalf[kMostShortStrips];
  // A border cuts the corner of a cell first, then its sides; farther away it leaves it whole.
  alignas(64) std::int32_t borderReach[kMostShortStrips], smaller[kMostShortStrips];
  alignas(64) std::int32_t perCorner[kMostShortStrips], cornerShift[kMostShortStrips];
  alignas(64) std::int32_t perSide[kMostShortStrips];
  // The first row of blocks, their number, and the places along and across of the tile's first cell
  // in it; what a column and a row add.
  alignas(64) std::int32_t firstRow[kMostShortStrips], blockRows[kMostShortStrips];
  alignas(64) std::int32_t s[kMostShortStrips], sColumn[kMostShortStrips], sRow[kMostShortStrips];
  alignas(64) std::int32_t v[kMostShortStrips], vColumn[kMostShortStrips], vRow[kMostShortStrips];
  // Where the middle of the first row of blocks meets the bands across and along, and what each
  // further row adds.
  alignas(64) float across[kMostShortStrips], acrossStep[kMostShortStrips];
  alignas(64) float acrossWidth[kMostShortStrips];
  alignas(64) float along[kMostShortStrips], alongStep[kMostShortStrips];
  alignas(64) float alongWidth[kMostShortStrips];
};

/// value = mantissa * 2^shift; the mantissa below one, the shift not negative.
struct Shifted {
  Floats mantissa;
  IntVec shift;
};

HWY_INLINE Shifted shifted(Floats value) {
  const F f;
  const Ints i32;
  const IntVec exponent = hn::ShiftRight<23>(hn::BitCast(i32, hn::Abs(value)));
  const IntVec shift = hn::Max(hn::Sub(exponent, hn::Set(i32, 126)), hn::Zero(i32));
  const Floats scale = hn::BitCast(f, hn::ShiftLeft<23>(hn::Sub(hn::Set(i32, 127), shift)));
  return {hn::Mul(value, scale), shift};
}

/// In whole units, as far as 16 bits go.
HWY_INLINE IntVec inUnits(Floats value, float unit) {
  const F f;
  return hn::NearestInt(hn::Min(hn::Mul(value, hn::Set(f, unit)), hn::Set(f, 32767.0f)));
}

/// Strips as they are loaded, one in each lane.
struct LoadedStrips {
  Floats startX, startY;  // From the tile's first cell.
  Floats alongX, alongY;
  Floats length, bend, tilt;
  Floats bodyHalf, coreHalf;
  Floats startExtra, endExtra;
  Floats larger, smaller;  // Of the direction's parts, without their signs.
  Floats borderReach;      // A border farther from a cell's centre leaves it whole.
};

HWY_INLINE Floats floats(float value) {
  return hn::Set(F(), value);
}

/// Those from number `lane` on; lanes without a strip repeat the last.
HWY_INLINE LoadedStrips loadStrips(const Strip* strips, int count, int lane, const CellMask& tile) {
  const F f;
  const Ints i32;
  constexpr int kStride = sizeof(Strip) / sizeof(float);
  static_assert(sizeof(Strip) % sizeof(float) == 0);
  const IntVec number = hn::Min(hn::Iota(i32, lane), hn::Set(i32, count - 1));
  const IntVec places = hn::Mul(number, hn::Set(i32, kStride));
  const auto load = [&](const float& member) { return hn::GatherIndex(f, &member, places); };
  LoadedStrips p;
  p.startX = hn::Sub(load(strips->startX), floats(static_cast<float>(tile.left)));
  p.startY = hn::Sub(load(strips->startY), floats(static_cast<float>(tile.top)));
  p.alongX = load(strips->alongX);
  p.alongY = load(strips->alongY);
  p.length = load(strips->length);
  p.bend = load(strips->bend);
  p.tilt = load(strips->tilt);
  p.bodyHalf = load(strips->bodyHalf);
  p.coreHalf = load(strips->coreHalf);
  p.startExtra = load(strips->startExtra);
  p.endExtra = load(strips->endExtra);
  const Floats a = hn::Abs(p.alongX), b = hn::Abs(p.alongY);
  p.larger = hn::Max(a, b);
  p.smaller = hn::Max(hn::Min(a, b), floats(kSmallestSmaller));
  p.borderReach = hn::Mul(floats(0.5f), hn::Add(p.larger, p.smaller));
  return p;
}

/// Which of them count as short, the first in the lowest bit.
template <bool kCore>
HWY_INLINE std::uint32_t whichAreShort(const LoadedStrips& p) {
  const F f;
  const Floats narrowest = kCore ? p.coreHalf : p.bodyHalf;
  const Floats tilted = hn::Mul(hn::Mul(p.tilt, p.tilt), p.bodyHalf);
  auto areShort = hn::Gt(p.length, hn::Zero(f));
  const auto isWithin = [&](Floats value, Floats most) {
    areShort = hn::And(areShort, hn::Le(value, most));
  };
  isWithin(p.length, floats(kLongest));
  isWithin(p.bodyHalf, floats(kWidestHalf));
  isWithin(floats(kNarrowestHalf), narrowest);
  const Floats extra = hn::Max(p.startExtra, p.endExtra), extra2 = hn::Mul(extra, extra);
  isWithin(extra, floats(kLargestExtra));
  const Floats half3 = hn::Mul(p.bodyHalf, hn::Mul(p.bodyHalf, p.bodyHalf));
  isWithin(hn::Mul(extra2, extra2), hn::Mul(half3, floats(kMostSunk)));
  isWithin(tilted, floats(kMostTilted));
  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(f, areShort, bytes);
  return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8;
}

/// Stores the lanes of many vectors, from one lane on.
struct LaneStore {
  int lane;

  void operator()(IntVec values, std::int32_t* members) const {
    hn::Store(values, Ints(), members + lane);
  }
  void operator()(Floats values, float* members) const { hn::Store(values, F(), members + lane); }
};

/// Distances are taken across the chord and shortened by what the curve leans on average.
HWY_INLINE Floats meanCosine(const LoadedStrips& p) {
  return hn::Sub(floats(1), hn::Mul(hn::Mul(p.tilt, p.tilt), floats(1.0f / 6)));
}

template <bool kCore>
HWY_INLINE void storeBorders(const LoadedStrips& p, LaneStore store, ShortStrips& out) {
  const auto lengthOf = [](Floats value) { return inUnits(value, kLengthUnit); };
  const auto shareOf = [](Floats value) { return inUnits(value, kShareUnit); };
  const Floats one = floats(1);
  store(lengthOf(p.length), out.length);
  store(lengthOf(hn::Neg(p.startExtra)), out.before);
  store(lengthOf(hn::Neg(p.endExtra)), out.beyond);
  // Two ways' product, 15 bits shifted off, is in 1/2 of a square cell.
  const Shifted bend = shifted(hn::Mul(hn::Mul(p.bend, meanCosine(p)), floats(kLengthUnit / 2)));
  store(shareOf(bend.mantissa), out.bend);
  store(bend.shift, out.bendShift);
  store(shareOf(p.tilt), out.tilt);
  store(lengthOf(p.bodyHalf), out.bodyHalf);
  store(shareOf(hn::Div(one, p.bodyHalf)), out.perBodyHalf);
  if constexpr (kCore) {
    store(lengthOf(p.coreHalf), out.coreHalf);
    store(shareOf(hn::Div(one, p.coreHalf)), out.perCoreHalf);
  }
  store(lengthOf(p.borderReach), out.borderReach);
  store(shareOf(p.smaller), out.smaller);
  // Half of what is cut off, so that 16 bits hold twice of it.
  const Shifted corner = shifted(hn::Div(floats(0.25f), hn::Mul(p.larger, p.smaller)));
  store(shareOf(corner.mantissa), out.perCorner);
  store(corner.shift, out.cornerShift);
  store(shareOf(hn::Div(floats(0.5f), p.larger)), out.perSide);
}

/// How far the paint of strips reaches: `aside` of the chord, and `ahead` of the place `middle` on
/// it.
struct Reaches {
  Floats aside, middle, ahead;
};

HWY_INLINE Reaches reachesOf(const LoadedStrips& p) {
  const Floats half = floats(0.5f), slack = floats(kSlack), bend = hn::Abs(p.bend);
  const Floats extra = hn::Max(p.startExtra, p.endExtra);
  const Floats bulge = hn::Mul(hn::Mul(bend, hn::Mul(p.length, p.length)), floats(0.25f));
  const Floats straightOn = hn::Mul(hn::Mul(bend, extra), hn::Add(p.length, extra));
  Reaches reaches;
  reaches.aside =
      hn::Add(hn::Add(p.bodyHalf, p.borderReach), hn::Add(hn::Add(bulge, straightOn), slack));
  reaches.middle = hn::Mul(half, hn::Add(p.length, hn::Sub(p.endExtra, p.startExtra)));
  const Floats lean = hn::Mul(hn::Abs(p.tilt), reaches.aside);
  const Floats whole = hn::Add(p.length, hn::Add(p.endExtra, p.startExtra));
  reaches.ahead = hn::Add(hn::Mul(half, whole), hn::Add(lean, slack));
  return reaches;
}

/// Stores the rows of blocks that they touch. Returns the first.
HWY_INLINE IntVec storeRows(const LoadedStrips& p, const Reaches& reaches, LaneStore store,
                            ShortStrips& out) {
  const F f;
  const Ints i32;
  constexpr int kSide = PaintTile::kSide;
  const Floats middle = hn::Add(p.startY, hn::Mul(reaches.middle, p.alongY));
  const Floats height =
      hn::Add(hn::Mul(reaches.ahead, hn::Abs(p.alongY)), hn::Mul(reaches.aside, hn::Abs(p.alongX)));
  const auto row = [&](Floats y) {
    return hn::ConvertTo(i32, hn::Min(hn::Max(y, hn::Zero(f)), floats(kSide)));
  };
  const IntVec first = row(hn::Sub(middle, height));
  const IntVec end = row(hn::Add(hn::Add(middle, height), floats(1)));
  const IntVec blockRows = hn::ShiftRight<1>(hn::Add(hn::Sub(end, first), hn::Set(i32, 1)));
  const IntVec last = hn::Sub(hn::Set(i32, kSide), hn::Add(blockRows, blockRows));
  const IntVec start = hn::Min(first, last);
  static_assert(kBlockRows == 2);
  store(start, out.firstRow);
  store(blockRows, out.blockRows);
  return start;
}

/// Stores where the tile's first cell in row `first` lies along and across. Counted from the tile's
/// first row in whole units, so that a cell has the same place whichever row is first.
HWY_INLINE void storePlaces(const LoadedStrips& p, IntVec first, LaneStore store,
                            ShortStrips& out) {
  const auto placeOf = [](Floats value) {
    return hn::NearestInt(hn::Mul(value, floats(kPlaceUnit)));
  };
  // Half a unit of lengths, so that they are rounded.
  const IntVec rounding = hn::Set(Ints(), static_cast<int>(kPlaceUnit / kLengthUnit / 2));
  const auto storeWay = [&](Floats atCorner, Floats perColumn, Floats perRow, std::int32_t* way,
                            std::int32_t* column, std::int32_t* row) {
    const IntVec rowStep = placeOf(perRow);
    store(hn::Add(hn::Add(placeOf(atCorner), rounding), hn::Mul(first, rowStep)), way);
    store(placeOf(perColumn), column);
    store(rowStep, row);
  };
  const Floats cosine = meanCosine(p);
  const Floats acrossX = hn::Mul(p.alongX, cosine), acrossY = hn::Mul(p.alongY, cosine);
  storeWay(hn::Neg(hn::Add(hn::Mul(p.startX, p.alongX), hn::Mul(p.startY, p.alongY))), p.alongX,
           p.alongY, out.s, out.sColumn, out.sRow);
  storeWay(hn::Sub(hn::Mul(p.startX, acrossY), hn::Mul(p.startY, acrossX)), hn::Neg(acrossY),
           acrossX, out.v, out.vColumn, out.vRow);
}

/// Stores where the rows of blocks meet the strips.
HWY_INLINE void storeBands(const LoadedStrips& p, const Reaches& reaches, IntVec first,
                           LaneStore store, ShortStrips& out) {
  const F f;
  const Floats half = floats(0.5f), one = floats(1);
  const Floats down = hn::Sub(hn::Add(hn::ConvertTo(f, first), half), p.startY);
  // `slope`: the part of the direction without which there is no band; `perRow`: of its centre.
  const auto storeBand = [&](Floats slope, Floats reach, Floats centre, Floats perRow,
                             float* centres, float* steps, float* widths) {
    const auto isThere = hn::Gt(hn::Abs(slope), floats(kLevelLine));
    const Floats width = hn::Add(hn::Div(reach, hn::Abs(slope)), hn::Mul(half, hn::Abs(perRow)));
    store(hn::IfThenElseZero(isThere, centre), centres);
    store(hn::IfThenElseZero(isThere, hn::Add(perRow, perRow)), steps);
    store(hn::IfThenElse(isThere, width, floats(kNoBand)), widths);
  };
  const Floats acrossStep = hn::Div(p.alongX, p.alongY);
  const Floats perColumn = hn::Div(one, p.alongX);
  const Floats alongStep = hn::Neg(hn::Mul(p.alongY, perColumn));
  storeBand(p.alongY, reaches.aside, hn::Add(p.startX, hn::Mul(down, acrossStep)), acrossStep,
            out.across, out.acrossStep, out.acrossWidth);
  const Floats along = hn::Add(hn::Mul(reaches.middle, perColumn), hn::Mul(down, alongStep));
  storeBand(p.alongX, reaches.ahead, hn::Add(p.startX, along), alongStep, out.along, out.alongStep,
            out.alongWidth);
}

/// Prepares as many strips from number `lane` on as a vector has lanes, for `tile`. Returns which
/// of them are short, the first in the lowest bit; the others' values are undefined.
template <bool kCore>
HWY_INLINE std::uint32_t prepareShortStrips(const Strip* strips, int count, int lane,
                                            const CellMask& tile, ShortStrips& out) {
  const LaneStore store{lane};
  const LoadedStrips loaded = loadStrips(strips, count, lane, tile);
  storeBorders<kCore>(loaded, store, out);
  const Reaches reaches = reachesOf(loaded);
  const IntVec first = storeRows(loaded, reaches, store, out);
  storePlaces(loaded, first, store, out);
  storeBands(loaded, reaches, first, store, out);
  return whichAreShort<kCore>(loaded);
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
