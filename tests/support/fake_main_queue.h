#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#include "platform/main_queue.h"

namespace support {

/// A main queue whose work waits until a test drains it. The thread that drains is the main thread.
class FakeMainQueue final : public platform::MainQueue {
 public:
  void post(std::function<void()> work) override {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
  }

  std::size_t waiting() const {
    const std::lock_guard lock(mutex_);
    return waiting_.size();
  }

  /// Runs everything that waits, and what that posts in turn.
  void drain() {
    while (auto work = next()) work();
  }

 private:
  std::function<void()> next() {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty()) return nullptr;
    auto work = std::move(waiting_.front());
    waiting_.pop_front();
    return work;
  }

  mutable std::mutex mutex_;
  std::deque<std::function<void()>> waiting_;
};

}  // namespace support
