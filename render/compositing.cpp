#include "render/compositing.h"

#include <algorithm>
#include <cstring>

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
constexpr int kRowsAhead = 6;

/// a + b - ab: two shares of one colour, one over the other.
HWY_INLINE V together(D d, V a, V b) {
  return hn::Add(a, hn::MulFixedPoint15(hn::Sub(hn::Set(d, kFull), a), b));
}

/// Where a row of pixels lies between four rows of cells.
struct RowMix {
  const std::int16_t* rows[4];
  const std::int16_t* weights;
  bool isDark;
};

HWY_INLINE RowMix mixFor(const GlowRows& glow, int y) {
  const int inCell = y & ((1 << glow.cellShift) - 1);
  const int first = (y >> glow.cellShift) + 2 + firstSplineCell(1 << glow.cellShift, inCell);
  const auto row = [&](int i) { return glow.rows[first + i]; };
  const std::uint8_t* dark = glow.isDark + first;
  return {{row(0), row(1), row(2), row(3)},
          glow.weights[inCell].weight,
          (dark[0] & dark[1] & dark[2] & dark[3]) != 0};
}

HWY_INLINE V mixed(D d, const RowMix& mix, int x) {
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

template <bool kFades>
HWY_INLINE void layBody(D d, V body, V fading, const StrokeColors& colors, std::int16_t* paint) {
  if constexpr (kFades) body = hn::MulFixedPoint15(body, fading);
  for (int c = 0; c < 4; ++c) {
    std::int16_t* place = paint + c * kSide * kSide;
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
    std::int16_t* place = paint + c * kSide * kSide;
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
    if (wide.isDark && narrow.isDark && !hasSharp) continue;
    for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
      std::int16_t* paint = tile.plane[0] + y * kSide + x;
      const V wideShare = wide.isDark ? hn::Zero(d) : mixed(d, wide, x);
      const V narrowShare = narrow.isDark ? hn::Zero(d) : mixed(d, narrow, x);
      if (!hasSharp) {
        const V share = together(d, wideShare, narrowShare);
        if (!isNothing(d, share)) layBody<kFades>(d, share, fading, colors, paint);
        continue;
      }
      const V body = hn::Load(d, sharp.body + sharpRow + x);
      const V core = hn::Load(d, sharp.core + sharpRow + x);
      V share = together(d, wideShare, body);
      share = together(d, share, narrowShare);
      share = together(d, share, body);
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
  std::int16_t* paint = tile.plane[0] + sharp.firstRow * kSide;
  const int count = (sharp.endRow - sharp.firstRow) * kSide;
  for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(d))) {
    const V body = hn::Load(d, sharp.body + i);
    if (!isNothing(d, body)) layBody<kFades>(d, body, fading, colors, paint + i);
  }
}

void layPlainTile(const SharpMasks& sharp, const StrokeColors& colors, std::int16_t alpha,
                  PaintTile& tile) {
  alpha < kFull ? layPlainRows<true>(sharp, colors, alpha, tile)
                : layPlainRows<false>(sharp, colors, alpha, tile);
}

void layTileRow(const PaintTile& tile, int y, std::uint8_t* pixels) {
  // A tile comes from memory, in four parts too short for the processor to foresee.
  for (const auto& plane : tile.plane) {
    hwy::Prefetch(plane + (y + kRowsAhead) % kSide * kSide);
    hwy::Prefetch(plane + (y + kRowsAhead) % kSide * kSide + kSide / 2);
  }
  const D d;
  const hn::Rebind<std::uint8_t, D> d8;
  const V alpha255 = hn::Set(d, 255);
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    hn::Vec<decltype(d8)> under[4];
    hn::LoadInterleaved4(d8, pixels + 4 * x, under[0], under[1], under[2], under[3]);
    const V alpha = hn::Load(d, tile.plane[3] + y * kSide + x);
    V over[4];
    for (int c = 0; c < 4; ++c) {
      // 0..255 to 0..kFull and back loses nothing.
      const V below8 = hn::PromoteTo(d, under[c]);
      const V below = hn::Add(hn::ShiftLeft<7>(below8), hn::ShiftRight<1>(below8));
      const V paint = hn::Load(d, tile.plane[c] + y * kSide + x);
      over[c] = hn::SaturatedAdd(paint, hn::Sub(below, hn::MulFixedPoint15(below, alpha)));
    }
    for (int c = 0; c < 4; ++c) {
      const V premultiplied = hn::Min(over[c], over[3]);
      under[c] = hn::DemoteTo(d8, hn::MulFixedPoint15(premultiplied, alpha255));
    }
    hn::StoreInterleaved4(under[0], under[1], under[2], under[3], d8, pixels + 4 * x);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(layGlowingTile);
HWY_EXPORT(layPlainTile);
HWY_EXPORT(layTileRow);

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

void layTileOverPixels(const PaintTile& tile, int tileX, int tileY,
                       const pixels::SurfaceView& pixels) {
  const int left = tileX * PaintTile::kSide, top = tileY * PaintTile::kSide;
  const int rows = std::min(PaintTile::kSide, pixels.height - top);
  const int count = std::min(PaintTile::kSide, pixels.width - left);
  const auto layRow = HWY_DYNAMIC_DISPATCH(layTileRow);
  for (int y = 0; y < rows; ++y) {
    std::uint8_t* row = pixels.row(top + y) + 4 * left;
    if (count == PaintTile::kSide) {
      layRow(tile, y, row);
      continue;
    }
    std::uint8_t whole[4 * PaintTile::kSide] = {};
    std::memcpy(whole, row, 4 * static_cast<std::size_t>(count));
    layRow(tile, y, whole);
    std::memcpy(row, whole, 4 * static_cast<std::size_t>(count));
  }
}

}  // namespace render
#endif
