// Paints short, gently bent strips into tiles in 16-bit arithmetic, once per instruction set.

#if defined(RENDER_SHORT_STRIP_PAINTING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef RENDER_SHORT_STRIP_PAINTING_INL_H_
#undef RENDER_SHORT_STRIP_PAINTING_INL_H_
#else
#define RENDER_SHORT_STRIP_PAINTING_INL_H_
#endif

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "hwy/highway.h"
#include "render/paint_tile.h"
#include "render/row_bands-inl.h"
#include "render/short_strips-inl.h"
#include "render/strip_painting.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

using Shorts = hn::CappedTag<std::int16_t, 32>;
using ShortVec = hn::Vec<Shorts>;

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

/// By how much the cells of a block lie farther along or across than its first: in units of
/// lengths, and the rest in units of places.
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
  const BandOfRow across{strips.across[k], strips.acrossStep[k], strips.acrossWidth[k]};
  const BandOfRow along{strips.along[k], strips.alongStep[k], strips.alongWidth[k]};
  for (int i = 0; i < strips.blockRows[k]; i += static_cast<int>(hn::Lanes(F())))
    storeRowEnds(across, along, i, PaintTile::kSide, rows.first, rows.end);
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
    // Beyond the ends a circle's border sinks below its tangent: as a parabola, and where it sinks
    // far more, to the fourth power.
    const ShortVec past = hn::ShiftLeft<3>(hn::Min(hn::Min(fromStart, toEnd), zero));
    const ShortVec past2 = hn::MulFixedPoint15(past, past);
    const auto share = [&](ShortVec half, ShortVec sunk) {
      return hn::IfThenElseZero(counts, shareAt(hn::Sub(hn::Sub(half, distance), sunk)));
    };
    raiseBlock(d, share(bodyHalf, hn::MulFixedPoint15(past2, perBodyHalf)), part, kSide,
               body + place);
    if constexpr (kCore) {
      if (hn::AllTrue(d, hn::Gt(distance, hn::Add(coreHalf, borderReach)))) return;
      const ShortVec sunk = hn::MulFixedPoint15(past2, perCoreHalf),
                     sunk16 = hn::ShiftLeft<4>(sunk);
      const ShortVec more =
          hn::MulFixedPoint15(hn::MulFixedPoint15(sunk16, sunk16), hn::ShiftRight<2>(perCoreHalf));
      raiseBlock(d, share(coreHalf, hn::Add(sunk, more)), part, kSide, core + place);
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
    isShort |= prepareShortStrips<kCore>(strips, count, lane, tile, prepared) << lane;
  isShort &= (std::uint32_t{1} << count) - 1;
  for (std::uint32_t rest = isShort; rest != 0; rest &= rest - 1)
    paintShortStrip<kCore>(prepared, std::countr_zero(rest), tile.cells, core);
  return isShort;
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
