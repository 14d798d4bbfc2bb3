#include "render/compositing.h"

#include <algorithm>
#include <cstring>

#include "render/glow_blur.h"

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

/// a + b - ab: two shares of one colour, one over the other.
HWY_INLINE V together(D d, V a, V b) {
  return hn::Add(a, hn::MulFixedPoint15(hn::Sub(hn::Set(d, kFull), a), b));
}

HWY_INLINE V mixed(D d, const RowMix& mix, int x) {
  const auto part = [&](int i) {
    return hn::MulFixedPoint15(hn::Load(d, mix.rows[i] + x), hn::Set(d, mix.weights[i]));
  };
  const V sum = hn::Add(hn::Add(part(0), part(1)), hn::Add(part(2), part(3)));
  const V glow = hn::Min(sum, hn::Set(d, kGlowFull));
  return hn::Add(glow, glow);
}

void joinMasks(const GlowingMasks& masks, TileShares& shares) {
  const D d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  for (int y = 0; y < kSide; ++y) {
    TileRowShares& row = shares.rows[y];
    const bool hasBody = y >= masks.firstRow && y < masks.endRow;
    for (int x = 0; x < kSide; x += lanes) {
      const V wide = mixed(d, masks.wide[y], x), narrow = mixed(d, masks.narrow[y], x);
      if (!hasBody) {
        hn::Store(together(d, wide, narrow), d, row.body + x);
        continue;
      }
      const V body = hn::Load(d, masks.body + y * kSide + x);
      const V core = hn::Load(d, masks.core + y * kSide + x);
      V share = together(d, wide, body);
      share = together(d, share, narrow);
      share = together(d, share, body);
      hn::Store(hn::Sub(share, hn::MulFixedPoint15(share, core)), d, row.body + x);
      hn::Store(core, d, row.core + x);
    }
  }
}

template <bool kFades>
void layBody(const TileRowShares& row, const StrokeColors& colors, V fading, std::int16_t* paint) {
  const D d;
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    V body = hn::Load(d, row.body + x);
    if constexpr (kFades) body = hn::MulFixedPoint15(body, fading);
    for (int c = 0; c < 4; ++c) {
      std::int16_t* place = paint + c * kSide * kSide + x;
      const V under = hn::Load(d, place);
      const V fromBody = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.body[c]), under), body);
      hn::Store(hn::SaturatedAdd(under, fromBody), d, place);
    }
  }
}

template <bool kFades>
void layBodyAndCore(const TileRowShares& row, const StrokeColors& colors, V fading,
                    std::int16_t* paint) {
  const D d;
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    V body = hn::Load(d, row.body + x), core = hn::Load(d, row.core + x);
    if constexpr (kFades) {
      body = hn::MulFixedPoint15(body, fading);
      core = hn::MulFixedPoint15(core, fading);
    }
    for (int c = 0; c < 4; ++c) {
      std::int16_t* place = paint + c * kSide * kSide + x;
      const V under = hn::Load(d, place);
      const V fromBody = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.body[c]), under), body);
      const V fromCore = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.core[c]), under), core);
      hn::Store(hn::SaturatedAdd(under, hn::SaturatedAdd(fromBody, fromCore)), d, place);
    }
  }
}

template <bool kFades>
void layTile(const TileShares& shares, const StrokeColors& colors, std::int16_t alpha,
             PaintTile& tile) {
  const V fading = hn::Set(D(), alpha);
  for (int y = 0; y < kSide; ++y) {
    std::int16_t* paint = tile.plane[0] + y * kSide;
    if (y >= shares.firstCoreRow && y < shares.endCoreRow) {
      layBodyAndCore<kFades>(shares.rows[y], colors, fading, paint);
    } else {
      layBody<kFades>(shares.rows[y], colors, fading, paint);
    }
  }
}

void layFully(const TileShares& shares, const StrokeColors& colors, PaintTile& tile) {
  layTile<false>(shares, colors, kFull, tile);
}

void layFading(const TileShares& shares, const StrokeColors& colors, std::int16_t alpha,
               PaintTile& tile) {
  layTile<true>(shares, colors, alpha, tile);
}

void layTileRow(const PaintTile& tile, int y, std::uint8_t* pixels) {
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

HWY_EXPORT(joinMasks);
HWY_EXPORT(layFully);
HWY_EXPORT(layFading);
HWY_EXPORT(layTileRow);

void joinGlowing(const GlowingMasks& masks, TileShares& shares) {
  HWY_DYNAMIC_DISPATCH(joinMasks)(masks, shares);
  shares.firstCoreRow = masks.firstRow;
  shares.endCoreRow = masks.endRow;
}

void layShares(const TileShares& shares, const StrokeColors& colors, double alpha,
               PaintTile& tile) {
  if (alpha >= 1) {
    HWY_DYNAMIC_DISPATCH(layFully)(shares, colors, tile);
    return;
  }
  const double share = std::clamp(alpha * 32768, 0.0, static_cast<double>(kFull));
  HWY_DYNAMIC_DISPATCH(layFading)(shares, colors, static_cast<std::int16_t>(share), tile);
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
