#pragma once

#include <cstdint>
#include <span>

#include "render/local_piece.h"

namespace render {

/// How finely a pixel is sampled: so many samples along each side.
inline constexpr int kSamplesAlong = 4;

/// The painted share of the pixel in column `x` and row `y` of the canvas, 0 to `full`, by samples:
/// for places where borders of different directions share the pixel. `pieces`: in cells of a
/// sample's size; those that do not come near are passed over. `ofCore`: of their light cores.
/// The same on every instruction set.
std::int16_t sampledShare(std::span<const LocalPiece> pieces, int x, int y, bool ofCore,
                          std::int16_t full);

}  // namespace render
