#pragma once

#include <mutex>
#include <optional>

#include "pixels/image.h"
#include "pixels/pixel_buffer.h"

namespace capture {

/// Keeps the latest camera picture for whoever draws it, as delivered: not mirrored, not scaled,
/// not dimmed. Any thread.
class FrameHub {
 public:
  /// Shares the frame's picture, without copying pixels. A frame without one changes nothing.
  void update(const pixels::PixelBuffer& frame);

  /// None until the first picture came; never none again.
  std::optional<pixels::Image> image() const;

 private:
  mutable std::mutex lock_;
  std::optional<pixels::Image> image_;
};

}  // namespace capture
