#include "platform/ffmpeg/frame_queue.h"

#include <algorithm>
#include <new>
#include <utility>

namespace platform::ffmpeg {

namespace {
/// The share of the newest frame in the encoder's pace: single slow moments hardly count.
constexpr double kPaceSmoothing = 0.2;
}  // namespace

FrameQueue::FrameQueue(int width, int height) : width_(width), height_(height) {}

bool FrameQueue::hasRoom() const {
  const std::lock_guard lock(mutex_);
  return hasRoomLocked();
}

std::optional<pixels::Surface> FrameQueue::takeBuffer() {
  {
    const std::lock_guard lock(mutex_);
    if (!buffers_.empty()) {
      pixels::Surface buffer = std::move(buffers_.back());
      buffers_.pop_back();
      return buffer;
    }
  }
  try {
    return pixels::Surface(width_, height_);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

bool FrameQueue::push(Frame frame) {
  {
    const std::lock_guard lock(mutex_);
    if (!hasRoomLocked()) return false;
    frames_.push_back(std::move(frame));
  }
  changed_.notify_one();
  return true;
}

void FrameQueue::close() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  changed_.notify_one();
}

std::optional<FrameQueue::Frame> FrameQueue::pop() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return closed_ || !frames_.empty(); });
  if (frames_.empty()) return std::nullopt;
  Frame frame = std::move(frames_.front());
  frames_.pop_front();
  return frame;
}

void FrameQueue::recycle(pixels::Surface buffer, double secondsTaken) {
  const std::lock_guard lock(mutex_);
  buffers_.push_back(std::move(buffer));
  adaptCapacity(secondsTaken);
}

void FrameQueue::adaptCapacity(double secondsTaken) {
  pace_ += kPaceSmoothing * (secondsTaken - pace_);
  const double fitting = kMostSeconds / std::max(pace_, 1e-3);
  const auto wanted =
      static_cast<std::size_t>(std::clamp(fitting, 1.0, static_cast<double>(kMostFrames)));
  // At most every other leaving frame goes without a successor: no long gap while it shrinks.
  shrankLast_ = wanted < capacity_ && !shrankLast_;
  if (shrankLast_) --capacity_;
  if (wanted > capacity_) ++capacity_;
}

}  // namespace platform::ffmpeg
