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

/// Frames on their way from the main thread to the encoder, and the buffers that come back. It
/// bridges the encoder's slow moments. Under a lasting overload it is full and takes one frame for
/// each that leaves, so that the frames left out lie evenly between the others. Any thread.
class FrameQueue {
 public:
  /// A quarter of a second at 30 frames a second.
  static constexpr std::size_t kMostFrames = 8;
  /// How long a frame may wait at an encoder of steady pace: a crash takes what waits here. A slow
  /// encoder therefore gets a shorter queue.
  static constexpr double kMostSeconds = 0.4;
  /// Before the encoder's pace is known. It grows by one with each frame of a fast encoder.
  static constexpr std::size_t kFramesAtFirst = 2;

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
  /// Gives a buffer back for its next use, after the encoder spent so long on it.
  void recycle(pixels::Surface buffer, double secondsTaken);

 private:
  bool hasRoomLocked() const { return !closed_ && frames_.size() < capacity_; }
  void adaptCapacity(double secondsTaken);

  const int width_;
  const int height_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Frame> frames_;
  std::vector<pixels::Surface> buffers_;
  std::size_t capacity_ = kFramesAtFirst;
  double pace_ = 0;          // Seconds that the encoder needs for a frame, lately.
  bool shrankLast_ = false;  // The capacity, when the last buffer came back.
  bool closed_ = false;
};

}  // namespace platform::ffmpeg
