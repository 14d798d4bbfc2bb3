#pragma once

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "pixels/image.h"

namespace support {

/// Blue, green and red where `x` and `y` say, from 0 at the left and top to 1.
inline std::vector<int> colourAt(const pixels::Image& image, double x, double y) {
  const std::uint8_t* pixel = image.row(static_cast<int>(y * image.height())) +
                              4 * static_cast<std::ptrdiff_t>(x * image.width());
  return {pixel[0], pixel[1], pixel[2]};
}

/// Expects GStreamer's colour bars, upright and not mirrored: white at the top left, blue at the
/// top right, dark blue at the bottom left.
inline void expectColourBars(const pixels::Image& image) {
  using testing::ElementsAre;
  using testing::Gt;
  using testing::Lt;
  EXPECT_THAT(colourAt(image, 0.05, 0.3), ElementsAre(Gt(230), Gt(230), Gt(230)));
  EXPECT_THAT(colourAt(image, 0.21, 0.3), ElementsAre(Lt(40), Gt(215), Gt(215)));
  EXPECT_THAT(colourAt(image, 0.79, 0.3), ElementsAre(Lt(40), Lt(40), Gt(215)));
  EXPECT_THAT(colourAt(image, 0.95, 0.3), ElementsAre(Gt(215), Lt(40), Lt(40)));
  EXPECT_THAT(colourAt(image, 0.05, 0.95), ElementsAre(Lt(180), Lt(80), Lt(40)));
}

}  // namespace support
