#pragma once

#include "platform/picture_encoder.h"

namespace platform {

/// Encodes with libpng.
class PngEncoder final : public PictureEncoder {
 public:
  Result<std::vector<std::uint8_t>> encodePng(const pixels::Surface& picture) override;
};

}  // namespace platform
