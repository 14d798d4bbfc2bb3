#pragma once

#include <cstdint>
#include <vector>

#include "pixels/surface.h"
#include "platform/result.h"

namespace platform {

/// Turns a drawn picture into the bytes of a file. Any thread.
class PictureEncoder {
 public:
  virtual ~PictureEncoder() = default;
  /// A PNG with straight alpha, marked as sRGB.
  virtual Result<std::vector<std::uint8_t>> encodePng(const pixels::Surface& picture) = 0;
};

}  // namespace platform
