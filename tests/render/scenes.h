#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "pixels/image.h"
#include "pixels/surface.h"
#include "render/canvas_renderer.h"

// What the renderer's tests paint and look at.

namespace render {

using Bgra = std::array<int, 4>;

inline Bgra pixelAt(const pixels::Surface& picture, int x, int y) {
  const std::uint8_t* p = picture.row(y) + 4 * x;
  return {p[0], p[1], p[2], p[3]};
}

inline strokes::Stroke strokeOf(std::vector<strokes::StrokePoint> points, int colorIndex = 0) {
  return {{}, strokes::StrokePoints(std::move(points)), colorIndex, 0};
}

inline RenderScene sceneOn(CanvasBackground background, std::vector<strokes::Stroke> strokes = {}) {
  RenderScene scene;
  scene.background = background;
  scene.strokes = std::move(strokes);
  return scene;
}

/// The share of a picture's pixels that is painted, added up: its area in pixels.
inline double paintedArea(const pixels::Surface& picture) {
  double sum = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) sum += picture.row(y)[4 * x + 3] / 255.0;
  }
  return sum;
}

/// A camera picture whose pixel (x, y) is color(x, y).
template <typename Color>
pixels::Image imageOf(int width, int height, Color color) {
  std::vector<std::uint8_t> bytes;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Bgra c = color(x, y);
      for (const int channel : c) bytes.push_back(static_cast<std::uint8_t>(channel));
    }
  }
  return pixels::Image::copyOf(bytes.data(), width, height, 4 * static_cast<std::size_t>(width));
}

}  // namespace render
