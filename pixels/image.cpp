#include "pixels/image.h"

#include <cassert>
#include <cstring>
#include <utility>

namespace pixels {

Image::Image(std::shared_ptr<const std::uint8_t> data, int width, int height,
             std::size_t strideBytes)
    : data_(std::move(data)), width_(width), height_(height), strideBytes_(strideBytes) {
  assert(data_ && width_ >= 1 && height_ >= 1 &&
         strideBytes_ >= 4u * static_cast<unsigned>(width_));
}

Image Image::copyOf(const std::uint8_t* data, int width, int height, std::size_t strideBytes) {
  const std::size_t rowBytes = 4u * static_cast<std::size_t>(width);
  std::shared_ptr<std::uint8_t[]> copy(
      new std::uint8_t[rowBytes * static_cast<std::size_t>(height)]);
  for (int y = 0; y < height; ++y) {
    const auto row = static_cast<std::size_t>(y);
    std::memcpy(copy.get() + row * rowBytes, data + row * strideBytes, rowBytes);
  }
  return Image(std::shared_ptr<const std::uint8_t>(copy, copy.get()), width, height, rowBytes);
}

}  // namespace pixels
