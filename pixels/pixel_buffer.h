#pragma once

#include <optional>

#include "pixels/image.h"

namespace pixels {

/// One camera frame. `image` is absent when the camera delivered something that is no picture.
struct PixelBuffer {
  std::optional<Image> image;  ///< As delivered: not mirrored, not scaled.
  double time = 0;             ///< Capture time, seconds on the monotonic clock.

  /// In pixels; 0 without a picture.
  int width() const { return image ? image->width() : 0; }
  int height() const { return image ? image->height() : 0; }
};

}  // namespace pixels
