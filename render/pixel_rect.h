#pragma once

#include <algorithm>

namespace render {

/// Whole pixels from `left`, `top` up to but not including `right`, `bottom`.
struct PixelRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int width() const { return right - left; }
  int height() const { return bottom - top; }
  bool isEmpty() const { return right <= left || bottom <= top; }

  PixelRect intersected(const PixelRect& other) const {
    return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
  }

  /// The smallest rectangle around both; an empty one counts for nothing.
  PixelRect united(const PixelRect& other) const {
    if (isEmpty()) return other;
    if (other.isEmpty()) return *this;
    return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
            std::max(bottom, other.bottom)};
  }

  PixelRect grownBy(int margin) const {
    return {left - margin, top - margin, right + margin, bottom + margin};
  }

  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

}  // namespace render
