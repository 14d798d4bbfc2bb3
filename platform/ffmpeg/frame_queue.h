#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

#include "pixels/surface.h"
#include "platform/media_time.h"

namespace platform::ffmpeg {

/// Frames on their way from the main thread to the encoder, and the buffers that come back. Never
/// more than kCapacity, nor much more than kMostSeconds of video: a crash takes what waits here.
/// Any thread.
class FrameQueue {
 public:
  /// A quarter of a second at 30 frames a second: bridges the encoder's slow moments; a lasting
  /// overload should rather show as frames left out, one at a time, than as memory.
  static constexpr std::size_t kCapacity = 8;
  static constexpr double kMostSeconds = 0.4;

  struct Frame {
    pixels::Surface picture;
    MediaTime time;
  };

  /// Of buffers of this size, in pixels.
  FrameQueue(int width, int height);

  bool hasRoom() const;
  /// A used buffer, or a new one. None when there is no memory.
  std::optional<pixels::Surface> takeBuffer();
  /// False when there is no room or the queue has been closed.
  bool push(Frame frame);
  /// No frame will follow.
  void close();

  /// Waits for the next frame. None when the queue is closed and empty.
  std::optional<Frame> pop();
  /// Gives a buffer back for its next use.
  void recycle(pixels::Surface buffer);

 private:
  bool hasRoomLocked() const;

  const int width_;
  const int height_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Frame> frames_;
  std::vector<pixels::Surface> buffers_;
  bool closed_ = false;
};

}  // namespace platform::ffmpeg
