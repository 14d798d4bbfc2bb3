#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "platform/picture_encoder.h"

namespace support {

/// Keeps the pictures it is given and answers with the bytes of a test, or fails.
class FakePictureEncoder final : public platform::PictureEncoder {
 public:
  platform::Result<std::vector<std::uint8_t>> encodePng(const pixels::Surface& picture) override {
    pictures.push_back(picture);
    if (failure) return *failure;
    return bytes;
  }

  std::vector<pixels::Surface> pictures;     ///< What was encoded, in order.
  std::vector<std::uint8_t> bytes{1, 2, 3};  ///< What every encoding gives.
  std::optional<platform::Error> failure;    ///< When set, every encoding fails so.
};

}  // namespace support
