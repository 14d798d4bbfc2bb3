#include "pixels/surface.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace pixels {

namespace {
constexpr std::align_val_t kAlignment{64};

std::size_t paddedRow(int width) {
  return (4u * static_cast<std::size_t>(width) + 63u) & ~static_cast<std::size_t>(63u);
}
}  // namespace

void Surface::Free::operator()(std::uint8_t* data) const {
  ::operator delete[](data, kAlignment);
}

Surface::Surface(int width, int height)
    : width_(width), height_(height), strideBytes_(paddedRow(width)) {
  const std::size_t bytes = strideBytes_ * static_cast<std::size_t>(height_);
  data_.reset(
      static_cast<std::uint8_t*>(::operator new[](std::max<std::size_t>(bytes, 1), kAlignment)));
  std::memset(data_.get(), 0, bytes);
}

Surface::Surface(const Surface& other) : Surface(other.width_, other.height_) {
  if (other.data_)
    std::memcpy(data_.get(), other.data_.get(), strideBytes_ * static_cast<std::size_t>(height_));
}

Surface& Surface::operator=(const Surface& other) {
  if (this != &other) *this = Surface(other);
  return *this;
}

Surface::Surface(Surface&& other) noexcept
    : data_(std::move(other.data_)),
      width_(std::exchange(other.width_, 0)),
      height_(std::exchange(other.height_, 0)),
      strideBytes_(std::exchange(other.strideBytes_, 0)) {}

Surface& Surface::operator=(Surface&& other) noexcept {
  data_ = std::move(other.data_);
  width_ = std::exchange(other.width_, 0);
  height_ = std::exchange(other.height_, 0);
  strideBytes_ = std::exchange(other.strideBytes_, 0);
  return *this;
}

bool operator==(const Surface& a, const Surface& b) {
  if (a.width_ != b.width_ || a.height_ != b.height_) return false;
  for (int y = 0; y < a.height_; ++y) {
    if (std::memcmp(a.row(y), b.row(y), 4u * static_cast<std::size_t>(a.width_)) != 0) return false;
  }
  return true;
}

}  // namespace pixels
