#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "vec.h"

namespace training::render {

/// What is seen at one sample of the picture.
struct Sample {
  float depth = std::numeric_limits<float>::max();  ///< Decimetres from the camera's plane.
  int triangle = -1;
  float first = 0, second = 0;  ///< Weights of the triangle's first two corners.
};

/// A vertex on the picture.
struct Projected {
  float x = 0, y = 0, depth = 0;
};

/// A grid of samples with a depth test.
class Canvas {
 public:
  Canvas(int width, int height)
      : width_(width),
        height_(height),
        samples_(static_cast<size_t>(width) * static_cast<size_t>(height)) {}

  int width() const { return width_; }
  int height() const { return height_; }
  const Sample& at(int x, int y) const {
    return samples_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
  }

  /// Draws a triangle; `accept(first, second, third)` says for corner weights whether it is there.
  template <class Accept>
  void draw(int triangle, const Projected& a, const Projected& b, const Projected& c,
            Accept accept);

 private:
  int width_, height_;
  std::vector<Sample> samples_;
};

template <class Accept>
void Canvas::draw(int triangle, const Projected& a, const Projected& b, const Projected& c,
                  Accept accept) {
  const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
  if (std::abs(area) < 1e-6f) return;
  const float left = std::min({a.x, b.x, c.x}), right = std::max({a.x, b.x, c.x});
  const float top = std::min({a.y, b.y, c.y}), bottom = std::max({a.y, b.y, c.y});
  if (right < 0 || bottom < 0 || left > static_cast<float>(width_) ||
      top > static_cast<float>(height_))
    return;
  const int x0 = std::max(0, static_cast<int>(std::ceil(left - 0.5f)));
  const int x1 =
      static_cast<int>(std::min(static_cast<float>(width_) - 1, std::floor(right - 0.5f)));
  const int y0 = std::max(0, static_cast<int>(std::ceil(top - 0.5f)));
  const int y1 =
      static_cast<int>(std::min(static_cast<float>(height_) - 1, std::floor(bottom - 0.5f)));
  const float scale = 1 / area;
  for (int y = y0; y <= y1; ++y) {
    const float py = static_cast<float>(y) + 0.5f;
    Sample* row = &samples_[static_cast<size_t>(y) * static_cast<size_t>(width_)];
    for (int x = x0; x <= x1; ++x) {
      const float px = static_cast<float>(x) + 0.5f;
      const float u = ((b.y - c.y) * (px - c.x) + (c.x - b.x) * (py - c.y)) * scale;
      const float v = ((c.y - a.y) * (px - c.x) + (a.x - c.x) * (py - c.y)) * scale;
      const float w = 1 - u - v;
      if (u < 0 || v < 0 || w < 0) continue;
      const float depth = u * a.depth + v * b.depth + w * c.depth;
      if (depth < row[x].depth && accept(u, v, w)) row[x] = {depth, triangle, u, v};
    }
  }
}

}  // namespace training::render
