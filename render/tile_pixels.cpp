#include "render/tile_pixels.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/tile_pixels.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

#ifndef RENDER_TILE_PIXELS_TOGETHER
#define RENDER_TILE_PIXELS_TOGETHER
namespace render {
// Pixels that are laid at once at most.
inline constexpr int kLaidPixels = 16;
}  // namespace render
#endif

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
constexpr int kSide = PaintTile::kSide;

void flattenRow(const std::int16_t (*channels)[kSide], std::uint8_t* pixels) {
  const hn::CappedTag<std::int16_t, 32> d;
  const hn::RebindToUnsigned<decltype(d)> pairs;
  const auto full = hn::Set(d, 255);
  auto* places = reinterpret_cast<std::uint16_t*>(pixels);
  for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
    const auto alpha = hn::Load(d, channels[3] + x);
    // Rounding may have lifted a colour above its alpha.
    const auto shown = [&](int c) {
      return hn::MulFixedPoint15(hn::Min(hn::Load(d, channels[c] + x), alpha), full);
    };
    const auto pairOf = [&](int c) {
      return hn::BitCast(pairs, hn::Or(shown(c), hn::ShiftLeft<8>(shown(c + 1))));
    };
    hn::StoreInterleaved2(pairOf(0), pairOf(2), pairs, places + 2 * x);
  }
}

void flattenRows(const PaintTile& tile, std::uint8_t* pixels, std::size_t strideBytes) {
  for (const auto& channels : tile.rows) {
    flattenRow(channels, pixels);
    pixels += strideBytes;
  }
}

#if HWY_TARGET == HWY_SCALAR

void layRow(const std::uint8_t* over, int count, std::uint8_t* pixels) {
  for (int i = 0; i < 4 * count; ++i) {
    const int product = pixels[i] * (255 - over[i | 3]) + 128;
    pixels[i] =
        static_cast<std::uint8_t>(std::min(over[i] + ((product + (product >> 8)) >> 8), 255));
  }
}

#else

using Bytes = hn::CappedTag<std::uint8_t, 4 * kLaidPixels>;

HWY_INLINE hn::Vec<Bytes> laid(hn::Vec<Bytes> over, hn::Vec<Bytes> under) {
  const Bytes d8;
  const hn::Repartition<std::uint16_t, Bytes> d16;
  const hn::Repartition<std::uint32_t, Bytes> d32;
  const auto alpha = hn::ShiftRight<24>(hn::BitCast(d32, over));
  const auto alphas = hn::BitCast(d16, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
  const auto share = hn::Sub(hn::Set(d16, 255), alphas);
  const auto low = hn::Set(d16, 0xFF);
  // Of 255 parts, rounded exactly, in the upper byte.
  const auto parted = [&](auto channel) {
    const auto product = hn::Add(hn::Mul(channel, share), hn::Set(d16, 128));
    return hn::Add(product, hn::ShiftRight<8>(product));
  };
  const auto pairs = hn::BitCast(d16, under);
  const auto even = hn::ShiftRight<8>(parted(hn::And(pairs, low)));
  const auto odd = hn::AndNot(low, parted(hn::ShiftRight<8>(pairs)));
  return hn::SaturatedAdd(over, hn::BitCast(d8, hn::Or(even, odd)));
}

void layRow(const std::uint8_t* over, int count, std::uint8_t* pixels) {
  const Bytes d8;
  const int lanes = static_cast<int>(hn::Lanes(d8)), whole = 4 * count / lanes * lanes;
  const int rest = 4 * count - whole;
  for (int i = 0; i < whole; i += lanes)
    hn::StoreU(laid(hn::LoadU(d8, over + i), hn::LoadU(d8, pixels + i)), d8, pixels + i);
  if (rest == 0) return;
  std::uint8_t lastOver[4 * kLaidPixels] = {}, last[4 * kLaidPixels] = {};
  for (int i = 0; i < rest; ++i) {
    lastOver[i] = over[whole + i];
    last[i] = pixels[whole + i];
  }
  hn::StoreU(laid(hn::LoadU(d8, lastOver), hn::LoadU(d8, last)), d8, last);
  for (int i = 0; i < rest; ++i) pixels[whole + i] = last[i];
}

#endif

/// The first `rows` rows of `count` pixels.
void layTileRows(const PaintTile& tile, int rows, int count, std::uint8_t* pixels,
                 std::size_t strideBytes) {
  // All rows before any: what has just been stored in parts cannot be loaded as a whole at once.
  alignas(64) std::uint8_t flat[kSide][4 * kSide];
  flattenRows(tile, flat[0], sizeof flat[0]);
  for (int y = 0; y < rows; ++y) {
    layRow(flat[y], count, pixels);
    pixels += strideBytes;
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(flattenRows);
HWY_EXPORT(layRow);
HWY_EXPORT(layTileRows);

void flattenTile(const PaintTile& tile, std::uint8_t* pixels, std::size_t strideBytes) {
  HWY_DYNAMIC_DISPATCH(flattenRows)(tile, pixels, strideBytes);
}

void layPixels(const std::uint8_t* over, int count, std::uint8_t* pixels) {
  HWY_DYNAMIC_DISPATCH(layRow)(over, count, pixels);
}

void layTileOverPixels(const PaintTile& tile, int tileX, int tileY,
                       const pixels::SurfaceView& pixels) {
  const int left = tileX * PaintTile::kSide, top = tileY * PaintTile::kSide;
  const int rows = std::min(PaintTile::kSide, pixels.height - top);
  const int count = std::min(PaintTile::kSide, pixels.width - left);
  HWY_DYNAMIC_DISPATCH(layTileRows)
  (tile, rows, count, pixels.row(top) + 4 * left, pixels.strideBytes);
}

}  // namespace render
#endif
