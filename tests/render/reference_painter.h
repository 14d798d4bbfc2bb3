#pragma once

#include <vector>

#include "strokes/stroke.h"

namespace render {

/// A pixel of the reference picture: premultiplied, 0 to 255, not rounded.
struct ReferencePixel {
  double b = 0, g = 0, r = 0, a = 0;
  bool isEdge = false;  ///< The border of the stroke or of its core runs through it.
};

/// The top left part of a canvas with one stroke on a transparent ground.
struct ReferencePicture {
  int width = 0;
  int height = 0;
  std::vector<ReferencePixel> pixels;

  const ReferencePixel& at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
};

/// Paints a stroke as the drawing rules define it, in double precision and without any of the
/// renderer's code: coverage by 256 samples a pixel, the Gaussian by direct convolution.
/// `canvasWidth`, `canvasHeight` in pixels; `width` x `height` pixels of it are painted.
ReferencePicture referencePicture(const strokes::Stroke& stroke, bool glow, double canvasWidth,
                                  double canvasHeight, int width, int height);

}  // namespace render
