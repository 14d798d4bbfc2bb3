// Paints short, gently bent strips into tiles in 16-bit arithmetic, once per instruction set.

#if defined(RENDER_SHORT_STRIP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RENDER_SHORT_STRIP_INL_H_
#undef RENDER_SHORT_STRIP_INL_H_
#else
#define RENDER_SHORT_STRIP_INL_H_
#endif

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "hwy/highway.h"
#include "render/paint_tile.h"
#include "render/strip_distance-inl.h"
#include "render/strip_painting.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

using Ints = hn::Rebind<std::int32_t, F>;
using IntVec = hn::Vec<Ints>;
using Shorts = hn::CappedTag<std::int16_t, 32>;
using ShortVec = hn::Vec<Shorts>;

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
// A tilt's square times half the width: three times how far off the border is at most.
constexpr float kMostTilted = 0.06f;
constexpr float kNarrowestHalf = 1.1f;
// Of a border that runs along the cells: small enough that it cuts none that it only touches.
constexpr float kSmallestSmaller = 1.0f / 256;
// Rounding never hides a cell that is touched.
constexpr float kShortSlack = 0.1f;
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

/// Prepares the strips in the lanes from `first` on for the tile whose first cell is `left`, `top`.
/// Returns which of them are short, the first in the lowest bit; the others' values are undefined.
template <bool kCore>
HWY_INLINE std::uint32_t prepareShortStrips(const Strip* strips, int count, int lane, float left,
                                            float top, ShortStrips& out) {
  const F f;
  const Ints i32;
  constexpr int kStride = sizeof(Strip) / sizeof(float);
  static_assert(sizeof(Strip) % sizeof(float) == 0);
  // Lanes without a strip repeat the last.
  const IntVec number = hn::Min(hn::Iota(i32, lane), hn::Set(i32, count - 1));
  const IntVec places = hn::Mul(number, hn::Set(i32, kStride));
  const auto load = [&](const float& member) { return hn::GatherIndex(f, &member, places); };
  const auto set = [f](float value) { return hn::Set(f, value); };
  const Strip& p = *strips;
  const Floats startX = load(p.startX), startY = load(p.startY);
  const Floats alongX = load(p.alongX), alongY = load(p.alongY);
  const Floats length = load(p.length), bend = load(p.bend), tilt = load(p.tilt);
  const Floats bodyHalf = load(p.bodyHalf), coreHalf = load(p.coreHalf);
  const Floats startExtra = load(p.startExtra), endExtra = load(p.endExtra);

  const Floats a = hn::Abs(alongX), b = hn::Abs(alongY);
  const Floats larger = hn::Max(a, b), smaller = hn::Max(hn::Min(a, b), set(kSmallestSmaller));
  const Floats half = set(0.5f), one = set(1);
  const Floats borderReach = hn::Mul(half, hn::Add(larger, smaller));
  const Floats extra = hn::Max(startExtra, endExtra);
  const Floats absBend = hn::Abs(bend), tilt2 = hn::Mul(tilt, tilt);

  const Floats narrowest = kCore ? coreHalf : bodyHalf;
  auto isShort = hn::And(hn::Le(length, set(kLongest)), hn::Le(bodyHalf, set(kWidestHalf)));
  isShort = hn::And(isShort, hn::Ge(narrowest, hn::Max(borderReach, set(kNarrowestHalf))));
  isShort = hn::And(isShort, hn::And(hn::Le(extra, set(kLargestExtra)), hn::Gt(length, set(0))));
  isShort = hn::And(isShort, hn::Le(hn::Mul(tilt2, bodyHalf), set(kMostTilted)));

  // Distances are taken across the chord and shortened by what the curve leans on average.
  const Floats cosine = hn::Sub(one, hn::Mul(tilt2, set(1.0f / 6)));
  const auto store = [&](IntVec value, std::int32_t* member) {
    hn::Store(value, i32, member + lane);
  };
  const auto lengthOf = [](Floats value) { return inUnits(value, kLengthUnit); };
  const auto shareOf = [](Floats value) { return inUnits(value, kShareUnit); };
  store(lengthOf(length), out.length);
  store(lengthOf(hn::Neg(startExtra)), out.before);
  store(lengthOf(hn::Neg(endExtra)), out.beyond);
  const Shifted bending = shifted(hn::Mul(hn::Mul(bend, cosine), set(128)));
  store(shareOf(bending.mantissa), out.bend);
  store(bending.shift, out.bendShift);
  store(shareOf(tilt), out.tilt);
  store(lengthOf(bodyHalf), out.bodyHalf);
  store(shareOf(hn::Div(one, bodyHalf)), out.perBodyHalf);
  if constexpr (kCore) {
    store(lengthOf(coreHalf), out.coreHalf);
    store(shareOf(hn::Div(one, coreHalf)), out.perCoreHalf);
  }
  store(lengthOf(borderReach), out.borderReach);
  store(shareOf(smaller), out.smaller);
  const Shifted corner = shifted(hn::Div(set(0.25f), hn::Mul(larger, smaller)));
  store(shareOf(corner.mantissa), out.perCorner);
  store(corner.shift, out.cornerShift);
  store(shareOf(hn::Div(half, larger)), out.perSide);

  const Floats bulge = hn::Mul(hn::Mul(absBend, hn::Mul(length, length)), set(0.25f));
  const Floats straightOn = hn::Mul(hn::Mul(absBend, extra), hn::Add(length, extra));
  const Floats reach = hn::Add(hn::Add(bodyHalf, borderReach),
                               hn::Add(hn::Add(bulge, straightOn), set(kShortSlack)));
  const Floats middle = hn::Mul(half, hn::Add(length, hn::Sub(endExtra, startExtra)));
  const Floats lean = hn::Mul(hn::Abs(tilt), reach);
  const Floats halfLength = hn::Add(hn::Mul(half, hn::Add(length, hn::Add(endExtra, startExtra))),
                                    hn::Add(lean, set(kShortSlack)));
  const Floats tileX = hn::Sub(startX, set(left)), tileY = hn::Sub(startY, set(top));
  const Floats middleY = hn::Add(tileY, hn::Mul(middle, alongY));
  const Floats height = hn::Add(hn::Mul(halfLength, b), hn::Mul(reach, a));
  constexpr int kSide = PaintTile::kSide;
  const auto row = [&](Floats y) {
    return hn::ConvertTo(i32, hn::Min(hn::Max(y, hn::Zero(f)), set(kSide)));
  };
  IntVec first = row(hn::Sub(middleY, height));
  const IntVec end = row(hn::Add(hn::Add(middleY, height), one));
  const IntVec blockRows = hn::ShiftRight<1>(hn::Add(hn::Sub(end, first), hn::Set(i32, 1)));
  first = hn::Min(first, hn::Sub(hn::Set(i32, kSide), hn::Add(blockRows, blockRows)));
  store(first, out.firstRow);
  store(blockRows, out.blockRows);

  const auto placeOf = [&](Floats value) {
    return hn::NearestInt(hn::Mul(value, set(kPlaceUnit)));
  };
  const Floats acrossX = hn::Mul(alongX, cosine), acrossY = hn::Mul(alongY, cosine);
  const Floats rowY = hn::Sub(hn::ConvertTo(f, first), tileY);
  // Half a unit of lengths, so that they are rounded.
  const IntVec rounding = hn::Set(i32, static_cast<int>(kPlaceUnit / kLengthUnit / 2));
  // From the tile's first cell on in whole units, so that they are the same whichever row is first.
  const auto storePlaces = [&](Floats atCorner, Floats perColumn, Floats perRow, std::int32_t* way,
                               std::int32_t* ofColumn, std::int32_t* ofRow) {
    const IntVec rowStep = placeOf(perRow);
    store(hn::Add(hn::Add(placeOf(atCorner), rounding), hn::Mul(first, rowStep)), way);
    store(placeOf(perColumn), ofColumn);
    store(rowStep, ofRow);
  };
  storePlaces(hn::Neg(hn::Add(hn::Mul(tileX, alongX), hn::Mul(tileY, alongY))), alongX, alongY,
              out.s, out.sColumn, out.sRow);
  storePlaces(hn::Sub(hn::Mul(tileX, acrossY), hn::Mul(tileY, acrossX)), hn::Neg(acrossY), acrossX,
              out.v, out.vColumn, out.vRow);

  const Floats down = hn::Add(rowY, half), far = set(kNoBand), level = set(kLevelLine);
  const auto isSteep = hn::Gt(b, level), isFlat = hn::Gt(a, level);
  const Floats perRow = hn::Div(one, alongY), perColumn = hn::Div(one, alongX);
  const Floats acrossStep = hn::Mul(alongX, perRow),
               alongStep = hn::Neg(hn::Mul(alongY, perColumn));
  const auto storeFloats = [&](Floats value, float* member) { hn::Store(value, f, member + lane); };
  storeFloats(hn::IfThenElseZero(isSteep, hn::Add(tileX, hn::Mul(down, acrossStep))), out.across);
  storeFloats(hn::IfThenElseZero(isSteep, hn::Add(acrossStep, acrossStep)), out.acrossStep);
  const auto width = [&](Floats size, Floats perStep, Floats step) {
    return hn::Add(hn::Mul(size, hn::Abs(perStep)), hn::Mul(half, hn::Abs(step)));
  };
  storeFloats(hn::IfThenElse(isSteep, width(reach, perRow, acrossStep), far), out.acrossWidth);
  const Floats alongAt =
      hn::Add(hn::Add(tileX, hn::Mul(middle, perColumn)), hn::Mul(down, alongStep));
  storeFloats(hn::IfThenElseZero(isFlat, alongAt), out.along);
  storeFloats(hn::IfThenElseZero(isFlat, hn::Add(alongStep, alongStep)), out.alongStep);
  storeFloats(hn::IfThenElse(isFlat, width(halfLength, perColumn, alongStep), far), out.alongWidth);

  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(f, isShort, bytes);
  return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8;
}

/// Raises a block's cells from place `part` on to `share`.
template <class D>
HWY_INLINE void raiseBlock(D d, hn::Vec<D> share, int part, std::ptrdiff_t stride,
                           std::int16_t* cells) {
  const auto raise = [](auto tag, auto values, std::int16_t* place) {
    hn::StoreU(hn::Max(hn::LoadU(tag, place), values), tag, place);
  };
#if HWY_TARGET != HWY_SCALAR
  if constexpr (hn::MaxLanes(D()) == kBlock) {
    if (hn::Lanes(d) == kBlock) {
      const hn::Half<D> row;
      raise(row, hn::LowerHalf(row, share), cells);
      raise(row, hn::UpperHalf(row, share), cells + stride);
      return;
    }
  }
#endif
  raise(d, share, cells + part / kBlockColumns * stride + part % kBlockColumns);
}

HWY_INLINE ShortVec shorts(std::int32_t value) {
  return hn::Set(Shorts(), static_cast<std::int16_t>(value));
}

/// By how much the cells of a block lie farther along or across than its first, in units of lengths
/// and in what is left of them in units of places.
struct BlockOffsets {
  alignas(64) std::int16_t whole[kBlock], rest[kBlock];
};

constexpr int kRestBits = 8;
static_assert(kPlaceUnit / kLengthUnit == 1 << kRestBits);

/// `column` and `row`: what each adds.
HWY_INLINE void findOffsets(std::int32_t column, std::int32_t row, BlockOffsets& offsets) {
  const Ints i32;
  const hn::Rebind<std::int16_t, Ints> i16;
  for (int i = 0; i < kBlock; i += static_cast<int>(hn::Lanes(i32))) {
    const IntVec columns = hn::Iota(i32, i % kBlockColumns);
    const IntVec places =
        hn::Add(hn::Mul(columns, hn::Set(i32, column)), hn::Set(i32, i / kBlockColumns * row));
    hn::Store(hn::DemoteTo(i16, hn::ShiftRight<kRestBits>(places)), i16, offsets.whole + i);
    const IntVec rest = hn::And(places, hn::Set(i32, (1 << kRestBits) - 1));
    hn::Store(hn::DemoteTo(i16, rest), i16, offsets.rest + i);
  }
}

/// The cells' ways along or across in a block whose first cell's is `place`: rounded the same
/// wherever the block begins.
HWY_INLINE ShortVec waysInBlock(std::int32_t place, const BlockOffsets& offsets, int part) {
  const Shorts d;
  const ShortVec whole = hn::Add(shorts(place >> kRestBits), hn::Load(d, offsets.whole + part));
  const ShortVec rest =
      hn::Add(shorts(place & ((1 << kRestBits) - 1)), hn::Load(d, offsets.rest + part));
  return hn::Add(whole, hn::ShiftRight<kRestBits>(rest));
}

/// Where each row of blocks of strip `k` begins and ends in the tile.
struct BlockRows {
  static constexpr int kMost = PaintTile::kSide / kBlockRows;

  alignas(64) std::int32_t first[kMost], end[kMost];  // Cells; none when first >= end.
};

HWY_INLINE void findBlockRows(const ShortStrips& strips, int k, BlockRows& rows) {
  const F f;
  const Ints i32;
  const Floats nearest = hn::Set(f, -1.0f), one = hn::Set(f, 1.0f);
  const Floats farthest = hn::Set(f, static_cast<float>(PaintTile::kSide - 1));
  const auto cellAfter = [&](Floats x) {
    return hn::ConvertTo(i32, hn::Add(hn::Min(hn::Max(x, nearest), farthest), one));
  };
  for (int i = 0; i < strips.blockRows[k]; i += static_cast<int>(hn::Lanes(f))) {
    const Floats row = hn::Iota(f, static_cast<float>(i));
    const auto centre = [&](float first, float step) {
      return hn::Add(hn::Set(f, first), hn::Mul(row, hn::Set(f, step)));
    };
    const Floats across = centre(strips.across[k], strips.acrossStep[k]);
    const Floats along = centre(strips.along[k], strips.alongStep[k]);
    const Floats aside = hn::Set(f, strips.acrossWidth[k]),
                 ahead = hn::Set(f, strips.alongWidth[k]);
    const Floats from = hn::Max(hn::Sub(across, aside), hn::Sub(along, ahead));
    const Floats to = hn::Min(hn::Add(across, aside), hn::Add(along, ahead));
    hn::Store(cellAfter(from), i32, rows.first + i);
    hn::Store(cellAfter(to), i32, rows.end + i);
  }
}

/// `body`, `core`: the tile's masks.
template <bool kCore>
void paintShortStrip(const ShortStrips& strips, int k, std::int16_t* body, std::int16_t* core) {
  constexpr int kSide = PaintTile::kSide;
  const Shorts d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  BlockRows rows;
  findBlockRows(strips, k, rows);
  const std::int32_t sColumn = strips.sColumn[k], vColumn = strips.vColumn[k];
  BlockOffsets sOffsets, vOffsets;
  findOffsets(sColumn, strips.sRow[k], sOffsets);
  findOffsets(vColumn, strips.vRow[k], vOffsets);
  const ShortVec zero = hn::Zero(d), one = hn::Set(d, std::int16_t{1 << 14});
  const ShortVec length = shorts(strips.length[k]), bend = shorts(strips.bend[k]);
  const ShortVec tilt = shorts(strips.tilt[k]);
  const ShortVec before = shorts(strips.before[k]), beyond = shorts(strips.beyond[k]);
  const int bendShift = strips.bendShift[k], cornerShift = strips.cornerShift[k];
  const ShortVec borderReach = shorts(strips.borderReach[k]), smaller = shorts(strips.smaller[k]);
  const ShortVec perCorner = shorts(strips.perCorner[k]), perSide = shorts(strips.perSide[k]);
  const ShortVec bodyHalf = shorts(strips.bodyHalf[k]), perBodyHalf = shorts(strips.perBodyHalf[k]);
  const ShortVec coreHalf = kCore ? shorts(strips.coreHalf[k]) : zero;
  const ShortVec perCoreHalf = kCore ? shorts(strips.perCoreHalf[k]) : zero;

  // The share of a cell whose centre lies `depth` inside the border.
  const auto shareAt = [&](ShortVec depth) {
    const ShortVec near = hn::Max(hn::Sub(borderReach, hn::Abs(depth)), zero);
    const ShortVec cut = hn::ShiftLeft<7>(near);
    const ShortVec corner = hn::Min(cut, smaller);
    const ShortVec square = hn::ShiftLeftSame(hn::MulFixedPoint15(corner, corner), cornerShift);
    const ShortVec outer = hn::Add(hn::MulFixedPoint15(square, perCorner),
                                   hn::MulFixedPoint15(hn::Sub(cut, corner), perSide));
    const ShortVec half = hn::IfThenElse(hn::Gt(depth, zero), hn::Sub(one, outer), outer);
    return hn::SaturatedAdd(half, half);
  };
  const auto paintCells = [&](ShortVec s, ShortVec v, int part, std::ptrdiff_t place) {
    const ShortVec left = hn::Sub(length, s);
    // The curve is cut across its direction at its ends, not across the chord.
    const ShortVec lean = hn::MulFixedPoint15(v, tilt);
    const ShortVec fromStart = hn::Add(s, lean), toEnd = hn::Add(left, lean);
    const auto counts = hn::And(hn::Gt(fromStart, before), hn::Gt(toEnd, beyond));
    // Beyond its ends the curve goes straight on.
    const ShortVec straight = hn::Min(hn::Min(s, left), zero);
    const ShortVec bent =
        hn::Add(hn::MulFixedPoint15(s, left), hn::MulFixedPoint15(straight, straight));
    const ShortVec curve = hn::MulFixedPoint15(hn::ShiftLeftSame(bent, bendShift), bend);
    const ShortVec distance = hn::Abs(hn::Sub(v, curve));
    // Beyond the ends a circle's border sinks below its tangent.
    const ShortVec past = hn::ShiftLeft<3>(hn::Min(hn::Min(fromStart, toEnd), zero));
    const ShortVec past2 = hn::MulFixedPoint15(past, past);
    const auto share = [&](ShortVec half, ShortVec perHalf) {
      const ShortVec sunk = hn::MulFixedPoint15(past2, perHalf);
      return hn::IfThenElseZero(counts, shareAt(hn::Sub(hn::Sub(half, distance), sunk)));
    };
    raiseBlock(d, share(bodyHalf, perBodyHalf), part, kSide, body + place);
    if constexpr (kCore) {
      if (hn::AllTrue(d, hn::Gt(distance, hn::Add(coreHalf, borderReach)))) return;
      raiseBlock(d, share(coreHalf, perCoreHalf), part, kSide, core + place);
    }
  };
  std::int32_t sRow = strips.s[k], vRow = strips.v[k];
  for (int i = 0; i < strips.blockRows[k]; ++i) {
    for (int x = rows.first[i]; x < rows.end[i]; x += kBlockColumns) {
      x = std::min(x, kSide - kBlockColumns);
      const std::ptrdiff_t place = (strips.firstRow[k] + kBlockRows * i) * kSide + x;
      for (int part = 0; part < kBlock; part += lanes) {
        paintCells(waysInBlock(sRow + x * sColumn, sOffsets, part),
                   waysInBlock(vRow + x * vColumn, vOffsets, part), part, place);
      }
    }
    sRow += kBlockRows * strips.sRow[k];
    vRow += kBlockRows * strips.vRow[k];
  }
}

/// Paints the short ones of up to 16 strips into a tile and returns which they are, the first in
/// the lowest bit; round ends are not painted.
template <bool kCore>
std::uint32_t paintShortStrips(const Strip* strips, int count, const CellMask& tile,
                               std::int16_t* core) {
  ShortStrips prepared;
  std::uint32_t isShort = 0;
  for (int lane = 0; lane < count; lane += static_cast<int>(hn::Lanes(F())))
    isShort |= prepareShortStrips<kCore>(strips, count, lane, static_cast<float>(tile.left),
                                         static_cast<float>(tile.top), prepared)
               << lane;
  isShort &= (std::uint32_t{1} << count) - 1;
  for (std::uint32_t rest = isShort; rest != 0; rest &= rest - 1)
    paintShortStrip<kCore>(prepared, std::countr_zero(rest), tile.cells, core);
  return isShort;
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
