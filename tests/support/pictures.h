#pragma once

#include <cstdint>
#include <vector>

#include "pixels/pixel_buffer.h"

namespace support {

/// A picture of one grey.
inline pixels::Image greyImage(int width, int height, std::uint8_t grey = 128) {
  const std::size_t stride = 4u * static_cast<std::size_t>(width);
  const std::vector<std::uint8_t> data(stride * static_cast<std::size_t>(height), grey);
  return pixels::Image::copyOf(data.data(), width, height, stride);
}

/// A camera frame of one grey.
inline pixels::PixelBuffer greyFrame(int width, int height, double time = 0,
                                     std::uint8_t grey = 128) {
  return {.image = greyImage(width, height, grey), .time = time};
}

}  // namespace support
