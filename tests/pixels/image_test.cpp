#include "pixels/image.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace pixels {
namespace {

TEST(Image, ACopyLeavesOutThePaddingOfItsRows) {
  const std::array<std::uint8_t, 24> padded{1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0,
                                            9, 8, 7, 6, 5, 4, 3, 2, 0, 0, 0, 0};

  const Image image = Image::copyOf(padded.data(), 2, 2, 12);

  EXPECT_EQ(image.strideBytes(), 8u);
  EXPECT_EQ(image.row(0)[7], 8);
  EXPECT_EQ(image.row(1)[0], 9);
}

TEST(Image, CopiesShareTheirPixels) {
  const std::array<std::uint8_t, 4> pixel{1, 2, 3, 255};
  const Image image = Image::copyOf(pixel.data(), 1, 1, 4);

  const Image other = image;  // NOLINT(performance-unnecessary-copy-initialization)

  EXPECT_TRUE(other.sharesPixelsWith(image));
}

}  // namespace
}  // namespace pixels
