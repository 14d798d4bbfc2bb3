#include "capture/frame_hub.h"

#include <utility>

namespace capture {

void FrameHub::update(const pixels::PixelBuffer& frame) {
  if (!frame.image) return;
  // Declared before the guard, so the earlier picture is let go of after the lock: that may hand
  // memory back to the camera.
  std::optional<pixels::Image> picture = frame.image;
  const std::lock_guard guard(lock_);
  image_.swap(picture);
}

std::optional<pixels::Image> FrameHub::image() const {
  const std::lock_guard guard(lock_);
  return image_;
}

}  // namespace capture
