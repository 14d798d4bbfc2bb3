#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "render/strip.h"

namespace render {

/// Strips of a stroke to look at by samples, 4 x 4 in a pixel: for places where borders of
/// different directions share it.
class SampledStrips {
 public:
  /// Takes the strips with these numbers in place of those before.
  void take(std::span<const Strip> strips, std::span<const int> numbers);

  /// The painted share of the pixel in column `x` and row `y` of the canvas, 0 to `full`; `ofCore`:
  /// by the light cores. Strips that do not come near are passed over. The same on every
  /// instruction set.
  std::int16_t share(int x, int y, bool ofCore, std::int16_t full) const;

  /// The strips, and around each the pixels that it may touch, in lists that are filled up to whole
  /// vectors with empty boxes.
  struct Lists {
    std::vector<Strip> strips;
    std::vector<float> left, right, top, bottom;
  };

 private:
  Lists lists_;
};

}  // namespace render
