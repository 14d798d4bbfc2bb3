#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "render/curve_piece.h"
#include "render/local_piece.h"

namespace render {

/// Pieces of a stroke to look at by samples, 4 x 4 in a pixel: for places where borders of
/// different directions share it.
class SampledPieces {
 public:
  /// Takes the pieces with these numbers in place of those before.
  void take(std::span<const CurvePiece> pieces, std::span<const int> numbers);

  /// The painted share of the pixel in column `x` and row `y` of the canvas, 0 to `full`; `ofCore`:
  /// by the light cores. Pieces that do not come near are passed over. The same on every
  /// instruction set.
  std::int16_t share(int x, int y, bool ofCore, std::int16_t full) const;

  /// The pieces, in samples, and around each the positions of a pixel's first sample that it may
  /// touch, in lists that are filled up to whole vectors with empty boxes.
  struct Lists {
    std::vector<LocalPiece> pieces;
    std::vector<float> left, right, top, bottom;
  };

 private:
  Lists lists_;
};

}  // namespace render
