#include "render/compositing.h"

#include <algorithm>

#include "hwy/cache_control.h"
#include "render/glow_blur.h"
#include "render/spline.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/compositing.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using D = hn::CappedTag<std::int16_t, 32>;
using V = hn::Vec<D>;
constexpr int kSide = PaintTile::kSide;
constexpr int kBothHalves = 3;
// How far kept shares are fetched ahead: they come from memory, in parts too short to be foreseen.
constexpr int kRowsAhead = 24;

/// a + b - ab: two shares of one colour, one over the other.
HWY_INLINE V together(D d, V a, V b) {
  return hn::Add(a, hn::MulFixedPoint15(hn::Sub(hn::Set(d, kFull), a), b));
}

/// Where a row of pixels lies between four rows of cells.
struct RowMix {
  const std::int16_t* rows[4];
  const std::int16_t* weights;
  int isDark;  // As GlowRows::isDark.
};

HWY_INLINE RowMix mixFor(const GlowRows& glow, int y) {
  const int inCell = y & ((1 << glow.cellShift) - 1);
  const int first = (y >> glow.cellShift) + 2 + firstSplineCell(1 << glow.cellShift, inCell);
  const auto row = [&](int i) { return glow.rows[first + i]; };
  const std::uint8_t* dark = glow.isDark + first;
  return {{row(0), row(1), row(2), row(3)},
          glow.weights[inCell].weight,
          dark[0] & dark[1] & dark[2] & dark[3]};
}

HWY_INLINE V mixed(D d, const RowMix& mix, int x) {
  if (mix.isDark & (x < StrokeShares::kHalf ? 1 : 2)) return hn::Zero(d);
  const auto part = [&](int i) {
    return hn::MulFixedPoint15(hn::Load(d, mix.rows[i] + x), hn::Set(d, mix.weights[i]));
  };
  const V sum = hn::Add(hn::Add(part(0), part(1)), hn::Add(part(2), part(3)));
  const V glow = hn::Min(sum, hn::Set(d, kGlowFull));
  return hn::Add(glow, glow);
}

HWY_INLINE bool isNothing(D d, V share) {
  return hn::AllTrue(d, hn::Eq(share, hn::Zero(d)));
}

/// What two passes of the body's colour, each a blurred layer and a sharp one, cover together.
HWY_INLINE V bothPasses(D d, V wide, V narrow, V body) {
  return together(d, together(d, together(d, wide, body), narrow), body);
}

/// `paint`: the place's blue.
template <bool kFades>
HWY_INLINE void layBody(D d, V body, V fading, const StrokeColors& colors, std::int16_t* paint) {
  if constexpr (kFades) body = hn::MulFixedPoint15(body, fading);
  for (int c = 0; c < 4; ++c) {
    std::int16_t* place = paint + c * kSide;
    const V under = hn::Load(d, place);
    const V fromBody = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.body[c]), under), body);
    hn::Store(hn::SaturatedAdd(under, fromBody), d, place);
  }
}

template <bool kFades>
HWY_INLINE void layBodyAndCore(D d, V body, V core, V fading, const StrokeColors& colors,
                               std::int16_t* paint) {
  if constexpr (kFades) {
    body = hn::MulFixedPoint15(body, fading);
    core = hn::MulFixedPoint15(core, fading);
  }
  for (int c = 0; c < 4; ++c) {
    std::int16_t* place = paint + c * kSide;
    const V under = hn::Load(d, place);
    const V fromBody = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.body[c]), under), body);
    const V fromCore = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.core[c]), under), core);
    hn::Store(hn::SaturatedAdd(under, hn::SaturatedAdd(fromBody, fromCore)), d, place);
  }
}

template <bool kFades>
void layGlowingRows(const GlowRows& wideRows, const GlowRows& narrowRows, const SharpMasks& sharp,
                    const StrokeColors& colors, std::int16_t alpha, PaintTile& tile) {
  const D d;
  const V fading = hn::Set(d, alpha);
  for (int y = 0; y < kSide; ++y) {
    const RowMix wide = mixFor(wideRows, y), narrow = mixFor(narrowRows, y);
    const bool hasSharp = y >= sharp.firstRow && y < sharp.endRow;
    const int sharpRow = (y - sharp.firstRow) * kSide;
    if ((wide.isDark & narrow.isDark) == kBothHalves && !hasSharp) continue;
    for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
      std::int16_t* paint = tile.rows[y][0] + x;
      const V wideShare = mixed(d, wide, x);
      const V narrowShare = mixed(d, narrow, x);
      if (!hasSharp) {
        const V share = together(d, wideShare, narrowShare);
        if (!isNothing(d, share)) layBody<kFades>(d, share, fading, colors, paint);
        continue;
      }
      const V body = hn::Load(d, sharp.body + sharpRow + x);
      const V core = hn::Load(d, sharp.core + sharpRow + x);
      V share = bothPasses(d, wideShare, narrowShare, body);
      if (isNothing(d, core)) {
        if (!isNothing(d, share)) layBody<kFades>(d, share, fading, colors, paint);
        continue;
      }
      share = hn::Sub(share, hn::MulFixedPoint15(share, core));
      layBodyAndCore<kFades>(d, share, core, fading, colors, paint);
    }
  }
}

void layGlowingTile(const GlowRows& wide, const GlowRows& narrow, const SharpMasks& sharp,
                    const StrokeColors& colors, std::int16_t alpha, PaintTile& tile) {
  alpha < kFull ? layGlowingRows<true>(wide, narrow, sharp, colors, alpha, tile)
                : layGlowingRows<false>(wide, narrow, sharp, colors, alpha, tile);
}

template <bool kFades>
void layPlainRows(const SharpMasks& sharp, const StrokeColors& colors, std::int16_t alpha,
                  PaintTile& tile) {
  const D d;
  const V fading = hn::Set(d, alpha);
  for (int y = sharp.firstRow; y < sharp.endRow; ++y) {
    const std::int16_t* row = sharp.body + (y - sharp.firstRow) * kSide;
    for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
      const V body = hn::Load(d, row + x);
      if (!isNothing(d, body)) layBody<kFades>(d, body, fading, colors, tile.rows[y][0] + x);
    }
  }
}

void layPlainTile(const SharpMasks& sharp, const StrokeColors& colors, std::int16_t alpha,
                  PaintTile& tile) {
  alpha < kFull ? layPlainRows<true>(sharp, colors, alpha, tile)
                : layPlainRows<false>(sharp, colors, alpha, tile);
}

/// Lane by lane what layGlowingRows() lays.
HWY_INLINE void keepShares(D d, V body, V core, int x, int y, StrokeShares& shares) {
  const int half = x / StrokeShares::kHalf;
  const std::uint64_t row = std::uint64_t{1} << y;
  hn::Store(body, d, shares.body[y] + x);
  hn::Store(core, d, shares.core[y] + x);
  if (isNothing(d, hn::Or(body, core))) return;
  shares.bodyRows[half] |= row;
  if (!isNothing(d, core)) shares.coreRows[half] |= row;
}

void mixGlowingTile(const GlowRows& wideRows, const GlowRows& narrowRows, const SharpMasks& sharp,
                    StrokeShares& shares) {
  const D d;
  for (int y = 0; y < kSide; ++y) {
    const RowMix wide = mixFor(wideRows, y), narrow = mixFor(narrowRows, y);
    const bool hasSharp = y >= sharp.firstRow && y < sharp.endRow;
    const int sharpRow = (y - sharp.firstRow) * kSide;
    for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
      const V wideShare = mixed(d, wide, x);
      const V narrowShare = mixed(d, narrow, x);
      if (!hasSharp) {
        keepShares(d, together(d, wideShare, narrowShare), hn::Zero(d), x, y, shares);
        continue;
      }
      const V body = hn::Load(d, sharp.body + sharpRow + x);
      const V core = hn::Load(d, sharp.core + sharpRow + x);
      const V share = bothPasses(d, wideShare, narrowShare, body);
      keepShares(d, hn::Sub(share, hn::MulFixedPoint15(share, core)), core, x, y, shares);
    }
  }
}

void mixPlainTile(const SharpMasks& sharp, StrokeShares& shares) {
  const D d;
  for (int y = sharp.firstRow; y < sharp.endRow; ++y) {
    const std::int16_t* row = sharp.body + (y - sharp.firstRow) * kSide;
    for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d)))
      keepShares(d, hn::Load(d, row + x), hn::Zero(d), x, y, shares);
  }
}

/// `left`: the first column.
template <bool kFades>
void laySharesOfHalf(const ShareColumns& half, const StrokeColors& colors, std::int16_t alpha,
                     int left, PaintTile& tile) {
  const D d;
  const V fading = hn::Set(d, alpha);
  for (int y = half.body.first; y < half.body.end; ++y) {
    const bool hasCore = y >= half.core.first && y < half.core.end;
    const auto rowOf = [y](const ShareRows& rows) {
      return rows.shares + (y - rows.first) * StrokeShares::kHalf;
    };
    const std::int16_t* bodyRow = rowOf(half.body);
    const std::int16_t* coreRow = hasCore ? rowOf(half.core) : nullptr;
    hwy::Prefetch(bodyRow + kRowsAhead * StrokeShares::kHalf);
    if (hasCore) hwy::Prefetch(coreRow + kRowsAhead * StrokeShares::kHalf);
    std::int16_t* paint = tile.rows[y][0] + left;
    for (int x = 0; x < StrokeShares::kHalf; x += static_cast<int>(hn::Lanes(d))) {
      const V body = hn::Load(d, bodyRow + x);
      const V core = hasCore ? hn::Load(d, coreRow + x) : hn::Zero(d);
      if (!isNothing(d, core)) {
        layBodyAndCore<kFades>(d, body, core, fading, colors, paint + x);
      } else if (!isNothing(d, body)) {
        layBody<kFades>(d, body, fading, colors, paint + x);
      }
    }
  }
}

void laySharesInTile(const ShareColumns* halves, const StrokeColors& colors, std::int16_t alpha,
                     PaintTile& tile) {
  for (int i = 0; i < 2; ++i) {
    const int left = i * StrokeShares::kHalf;
    alpha < kFull ? laySharesOfHalf<true>(halves[i], colors, alpha, left, tile)
                  : laySharesOfHalf<false>(halves[i], colors, alpha, left, tile);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(layGlowingTile);
HWY_EXPORT(layPlainTile);
HWY_EXPORT(mixGlowingTile);
HWY_EXPORT(mixPlainTile);
HWY_EXPORT(laySharesInTile);

namespace {

/// Of 32768, kFull at most: not faded.
std::int16_t fixedAlpha(double alpha) {
  return static_cast<std::int16_t>(std::clamp(alpha * 32768, 0.0, static_cast<double>(kFull)));
}

}  // namespace

void layGlowing(const GlowRows& wide, const GlowRows& narrow, const SharpMasks& sharp,
                const StrokeColors& colors, double alpha, PaintTile& tile) {
  HWY_DYNAMIC_DISPATCH(layGlowingTile)(wide, narrow, sharp, colors, fixedAlpha(alpha), tile);
}

void layPlain(const SharpMasks& sharp, const StrokeColors& colors, double alpha, PaintTile& tile) {
  HWY_DYNAMIC_DISPATCH(layPlainTile)(sharp, colors, fixedAlpha(alpha), tile);
}

void mixGlowing(const GlowRows& wide, const GlowRows& narrow, const SharpMasks& sharp,
                StrokeShares& shares) {
  HWY_DYNAMIC_DISPATCH(mixGlowingTile)(wide, narrow, sharp, shares);
}

void mixPlain(const SharpMasks& sharp, StrokeShares& shares) {
  HWY_DYNAMIC_DISPATCH(mixPlainTile)(sharp, shares);
}

void layShares(const ShareColumns (&halves)[2], const StrokeColors& colors, double alpha,
               PaintTile& tile) {
  HWY_DYNAMIC_DISPATCH(laySharesInTile)(halves, colors, fixedAlpha(alpha), tile);
}

}  // namespace render
#endif
