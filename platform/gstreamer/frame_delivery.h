#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

#include "pixels/pixel_buffer.h"
#include "platform/capture_session.h"
#include "platform/serial_queue.h"

namespace platform::gstreamer {

/// Brings the frames of one pipeline to their handler, one at a time, until it is closed.
class FrameDelivery : public std::enable_shared_from_this<FrameDelivery> {
 public:
  /// `queue` lives at least until close().
  FrameDelivery(SerialQueue& queue, CaptureHandler handler)
      : queue_(queue), handler_(std::move(handler)) {}

  /// Runs the handler on the queue and waits for it, so that the caller takes no newer frame
  /// meanwhile. False once closed.
  bool deliver(std::optional<pixels::PixelBuffer> sample);

  /// Waits for a handler that is running, and lets none run afterwards. Not from the handler.
  void close();

 private:
  void handle(const std::optional<pixels::PixelBuffer>& sample);

  SerialQueue& queue_;
  const CaptureHandler handler_;
  std::mutex lock_;  // Held while the handler runs.
  std::condition_variable handled_;
  bool open_ = true;
  bool waiting_ = false;  // A frame is on its way to the handler.
};

}  // namespace platform::gstreamer
