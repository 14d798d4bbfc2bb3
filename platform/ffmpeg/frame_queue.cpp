#include "platform/ffmpeg/frame_queue.h"

#include <new>
#include <utility>

namespace platform::ffmpeg {

FrameQueue::FrameQueue(int width, int height) : width_(width), height_(height) {}

bool FrameQueue::hasRoom() const {
  const std::lock_guard lock(mutex_);
  return hasRoomLocked();
}

bool FrameQueue::hasRoomLocked() const {
  if (closed_ || frames_.size() >= kCapacity) return false;
  if (frames_.empty()) return true;
  return frames_.back().time.seconds() - frames_.front().time.seconds() < kMostSeconds;
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

void FrameQueue::recycle(pixels::Surface buffer) {
  const std::lock_guard lock(mutex_);
  buffers_.push_back(std::move(buffer));
}

}  // namespace platform::ffmpeg
