#include "platform/gstreamer/frame_delivery.h"

#include <utility>

namespace platform::gstreamer {

bool FrameDelivery::deliver(std::optional<pixels::PixelBuffer> sample) {
  std::unique_lock guard(lock_);
  if (!open_) return false;
  waiting_ = true;
  queue_.post([self = shared_from_this(), sample = std::move(sample)] { self->handle(sample); });
  handled_.wait(guard, [this] { return !waiting_ || !open_; });
  return open_;
}

void FrameDelivery::close() {
  const std::lock_guard guard(lock_);
  open_ = false;
  handled_.notify_all();
}

void FrameDelivery::handle(const std::optional<pixels::PixelBuffer>& sample) {
  const std::lock_guard guard(lock_);
  if (open_) handler_(sample);
  waiting_ = false;
  handled_.notify_all();
}

}  // namespace platform::gstreamer
