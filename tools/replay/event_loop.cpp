#include "tools/replay/event_loop.h"

#include <algorithm>
#include <utility>

namespace replay {

struct EventLoop::Timer {
  double interval = 0;
  double due = 0;
  std::function<void()> fire;
};

namespace {

template <class Kept>
class TimerHandle final : public platform::RepeatingTimer {
 public:
  explicit TimerHandle(std::shared_ptr<Kept> timer) : timer_(std::move(timer)) {}

 private:
  std::shared_ptr<Kept> timer_;
};

}  // namespace

/// Drops what still waits when it ends, as every serial queue does.
class EventLoop::Queue final : public platform::SerialQueue {
 public:
  explicit Queue(EventLoop& loop) : loop_(loop) {}

  void post(std::function<void()> work) override {
    loop_.post([alive = std::weak_ptr(alive_), run = std::move(work)] {
      if (!alive.expired()) run();
    });
  }

 private:
  EventLoop& loop_;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

void EventLoop::post(std::function<void()> work) {
  {
    const std::lock_guard guard(lock_);
    waiting_.push_back(std::move(work));
  }
  posted_.notify_all();
}

std::unique_ptr<platform::SerialQueue> EventLoop::make(const std::string&) {
  return std::make_unique<Queue>(*this);
}

std::unique_ptr<platform::RepeatingTimer> EventLoop::repeat(double intervalSeconds,
                                                            std::function<void()> fire) {
  auto timer =
      std::make_shared<Timer>(Timer{intervalSeconds, now_ + intervalSeconds, std::move(fire)});
  timers_.push_back(timer);
  return std::make_unique<TimerHandle<Timer>>(std::move(timer));
}

void EventLoop::runUntilIdle() {
  while (const std::function<void()> work = nextWork()) work();
}

void EventLoop::advanceTo(double time) {
  runUntilIdle();
  for (auto timer = nextTimer(); timer && timer->due <= time; timer = nextTimer()) {
    now_ = std::max(now_, timer->due);
    timer->due += timer->interval;
    const std::function<void()> fire = timer->fire;  // The timer may end from within.
    timer.reset();
    fire();
    runUntilIdle();
  }
  now_ = std::max(now_, time);
}

bool EventLoop::runUntil(const std::function<bool()>& isDone, std::chrono::seconds atMost) {
  const auto end = std::chrono::steady_clock::now() + atMost;
  for (runUntilIdle(); !isDone(); runUntilIdle()) {
    std::unique_lock guard(lock_);
    if (!posted_.wait_until(guard, end, [this] { return !waiting_.empty(); })) return false;
  }
  return true;
}

std::function<void()> EventLoop::nextWork() {
  const std::lock_guard guard(lock_);
  if (waiting_.empty()) return nullptr;
  std::function<void()> work = std::move(waiting_.front());
  waiting_.pop_front();
  return work;
}

std::shared_ptr<EventLoop::Timer> EventLoop::nextTimer() {
  std::erase_if(timers_, [](const auto& timer) { return timer.expired(); });
  std::shared_ptr<Timer> next;
  for (const auto& weak : timers_) {
    const auto timer = weak.lock();
    if (!next || timer->due < next->due) next = timer;
  }
  return next;
}

}  // namespace replay
