#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/timer_factory.h"

namespace support {

/// Makes timers that fire when a test says so.
class FakeTimerFactory final : public platform::TimerFactory {
 public:
  std::unique_ptr<platform::RepeatingTimer> repeat(double intervalSeconds,
                                                   std::function<void()> fire) override {
    auto timer = std::make_shared<Timer>(intervalSeconds, std::move(fire));
    timers_.push_back(timer);
    return std::make_unique<Handle>(std::move(timer));
  }

  std::size_t running() const {
    return static_cast<std::size_t>(
        std::count_if(timers_.begin(), timers_.end(), [](const auto& t) { return !t.expired(); }));
  }

  /// The interval of the newest timer, seconds; 0 when there was none.
  double newestInterval() const {
    const auto timer = timers_.empty() ? nullptr : timers_.back().lock();
    return timer ? timer->intervalSeconds : 0;
  }

  /// Fires each running timer once, in the order of their making.
  void fire() {
    const auto timers = timers_;
    for (const auto& weak : timers) {
      const auto timer = weak.lock();
      if (!timer) continue;
      const auto fire = timer->fire;  // The timer may end from within.
      fire();
    }
    std::erase_if(timers_, [](const auto& timer) { return timer.expired(); });
  }

 private:
  struct Timer {
    Timer(double interval, std::function<void()> work)
        : intervalSeconds(interval), fire(std::move(work)) {}
    const double intervalSeconds;
    const std::function<void()> fire;
  };

  struct Handle final : platform::RepeatingTimer {
    explicit Handle(std::shared_ptr<Timer> running) : timer(std::move(running)) {}
    const std::shared_ptr<Timer> timer;
  };

  std::vector<std::weak_ptr<Timer>> timers_;
};

}  // namespace support
