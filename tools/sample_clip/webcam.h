#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "pixels/surface.h"
#include "training/render/random.h"

namespace sample_clip {

/// What a cheap camera makes of a picture: its colours, its softness, its noise.
class Webcam {
 public:
  explicit Webcam(training::render::Random& random);

  /// Develops one frame in place. `frame`: its number, so that each has noise of its own.
  void develop(pixels::Surface& picture, int frame) const;

 private:
  std::array<std::array<std::uint8_t, 256>, 3> curves_{};  ///< Blue, green, red.
  int softness_ = 0;                                       ///< How often it blurs a little.
  std::vector<std::int8_t> noise_;
};

}  // namespace sample_clip
