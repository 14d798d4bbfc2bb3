#pragma once

#include <cstdint>

#include "render/pixel_rect.h"

namespace render {

/// The value of a full channel or share in 15-bit arithmetic.
inline constexpr std::int16_t kFull = 32767;

/// A square of the painting: premultiplied blue, green, red and alpha, 0 to kFull. Fifteen bits, so
/// that hundreds of faint layers add up without drifting.
struct PaintTile {
  static constexpr int kSide = 64;

  /// Each row has its four channels one after the other: what is painted together lies together,
  /// and never a multiple of a page apart, which would hold the processor up.
  alignas(64) std::int16_t rows[kSide][4][kSide];
};

/// The tiles that hold these pixels, counted from the canvas's top left corner.
inline PixelRect tilesAround(const PixelRect& pixels) {
  // Arithmetic shifts round down, for pixels left of the canvas too.
  static_assert(PaintTile::kSide == 1 << 6);
  if (pixels.isEmpty()) return {};
  return {pixels.left >> 6, pixels.top >> 6, ((pixels.right - 1) >> 6) + 1,
          ((pixels.bottom - 1) >> 6) + 1};
}

inline PixelRect pixelsOfTiles(const PixelRect& tiles) {
  return {tiles.left * PaintTile::kSide, tiles.top * PaintTile::kSide,
          tiles.right * PaintTile::kSide, tiles.bottom * PaintTile::kSide};
}

/// The two colours of a stroke: blue, green, red, alpha, 0 to kFull.
struct StrokeColors {
  std::int16_t body[4];
  std::int16_t core[4];
};

}  // namespace render
