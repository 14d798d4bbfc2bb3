#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pixels {

/// An opaque picture of 8-bit BGRA pixels, sRGB, top row first, that never changes once it is made.
/// The fourth byte of a pixel is ignored. Copies share the memory, so an image travels between
/// threads by value.
class Image {
 public:
  /// Shares `data`, which holds at least `strideBytes * height` bytes. Whoever keeps the image
  /// keeps the memory. `width`, `height` >= 1, `strideBytes` >= 4 * width.
  Image(std::shared_ptr<const std::uint8_t> data, int width, int height, std::size_t strideBytes);

  /// Copies the pixels into memory of its own.
  static Image copyOf(const std::uint8_t* data, int width, int height, std::size_t strideBytes);

  int width() const { return width_; }
  int height() const { return height_; }
  std::size_t strideBytes() const { return strideBytes_; }
  const std::uint8_t* row(int y) const {
    return data_.get() + static_cast<std::size_t>(y) * strideBytes_;
  }

  /// True when both are the same picture in memory, not merely equal pixels.
  bool sharesPixelsWith(const Image& other) const { return data_ == other.data_; }

 private:
  std::shared_ptr<const std::uint8_t> data_;
  int width_;
  int height_;
  std::size_t strideBytes_;
};

}  // namespace pixels
