#include "render/compositing.h"

#include <algorithm>
#include <cstring>

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

void joinGlowing(const TileRowMasks& masks, TileRowShares& shares) {
  const D d;
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    const V wide = hn::Load(d, masks.wideGlow + x);
    const V narrow = hn::Load(d, masks.narrowGlow + x);
    const V body = hn::Load(d, masks.body + x);
    const V core = hn::Load(d, masks.core + x);
    V share = together(d, hn::Add(wide, wide), body);
    share = together(d, share, hn::Add(narrow, narrow));
    share = together(d, share, body);
    hn::Store(hn::Sub(share, hn::MulFixedPoint15(share, core)), d, shares.body + x);
    hn::Store(core, d, shares.core + x);
  }
}

void fade(std::int16_t alpha, TileRowShares& shares) {
  const D d;
  const V factor = hn::Set(d, alpha);
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    hn::Store(hn::MulFixedPoint15(hn::Load(d, shares.body + x), factor), d, shares.body + x);
    hn::Store(hn::MulFixedPoint15(hn::Load(d, shares.core + x), factor), d, shares.core + x);
  }
}

void layStroke(const StrokeColors& colors, const TileRowShares& shares, int y, PaintTile& tile) {
  const D d;
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    const V body = hn::Load(d, shares.body + x);
    const V core = hn::Load(d, shares.core + x);
    for (int c = 0; c < 4; ++c) {
      std::int16_t* row = tile.plane[c] + y * kSide + x;
      const V under = hn::Load(d, row);
      const V fromBody = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.body[c]), under), body);
      const V fromCore = hn::MulFixedPoint15(hn::Sub(hn::Set(d, colors.core[c]), under), core);
      hn::Store(hn::SaturatedAdd(under, hn::SaturatedAdd(fromBody, fromCore)), d, row);
    }
  }
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

HWY_EXPORT(joinGlowing);
HWY_EXPORT(fade);
HWY_EXPORT(layStroke);
HWY_EXPORT(layTileRow);

void joinGlowingRow(const TileRowMasks& masks, TileRowShares& shares) {
  HWY_DYNAMIC_DISPATCH(joinGlowing)(masks, shares);
}

void fadeRow(std::int16_t alpha, TileRowShares& shares) {
  HWY_DYNAMIC_DISPATCH(fade)(alpha, shares);
}

void layOver(const StrokeColors& colors, const TileRowShares& shares, int y, PaintTile& tile) {
  HWY_DYNAMIC_DISPATCH(layStroke)(colors, shares, y, tile);
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
