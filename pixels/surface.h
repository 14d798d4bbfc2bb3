#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pixels {

/// Writable premultiplied BGRA pixels, 8 bits each, sRGB, top row first, owned by somebody else.
struct SurfaceView {
  std::uint8_t* data = nullptr;
  int width = 0;
  int height = 0;
  std::size_t strideBytes = 0;

  std::uint8_t* row(int y) const { return data + static_cast<std::size_t>(y) * strideBytes; }
};

/// What a drawing goes into: pixels, and how many of them make one logical point. Every size in
/// the drawing rules is in logical points; a HiDPI screen only makes them finer.
struct DrawingContext {
  SurfaceView pixels;
  double deviceScale = 1;  ///< Device pixels per logical point, > 0.
};

/// Owns a picture that can be drawn into. Rows start on 64-byte boundaries.
/// Moves are cheap and leave an empty surface; copies copy the pixels.
class Surface {
 public:
  Surface() = default;
  /// All pixels transparent black. `width`, `height` >= 0.
  Surface(int width, int height);
  Surface(const Surface& other);
  Surface& operator=(const Surface& other);
  Surface(Surface&& other) noexcept;
  Surface& operator=(Surface&& other) noexcept;

  int width() const { return width_; }
  int height() const { return height_; }
  std::size_t strideBytes() const { return strideBytes_; }
  bool isEmpty() const { return width_ == 0 || height_ == 0; }
  SurfaceView view() { return {data_.get(), width_, height_, strideBytes_}; }
  const std::uint8_t* row(int y) const {
    return data_.get() + static_cast<std::size_t>(y) * strideBytes_;
  }

  /// Equal size and equal pixels; padding does not count.
  friend bool operator==(const Surface& a, const Surface& b);

 private:
  struct Free {
    void operator()(std::uint8_t* data) const;
  };
  std::unique_ptr<std::uint8_t[], Free> data_;
  int width_ = 0;
  int height_ = 0;
  std::size_t strideBytes_ = 0;
};

}  // namespace pixels
