#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/serial_queue.h"
#include "platform/timer_factory.h"

namespace replay {

/// The program's threads, timers and clock as one thread that runs when it is told to: the same
/// calls give the same order of work and the same times on every machine.
class EventLoop final : public platform::Clock,
                        public platform::MainQueue,
                        public platform::SerialQueueFactory,
                        public platform::TimerFactory {
 public:
  EventLoop() = default;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  /// Seconds; only advanceTo moves it.
  double now() const override { return now_; }
  void post(std::function<void()> work) override;
  /// The work of every queue waits in one line with all other work.
  std::unique_ptr<platform::SerialQueue> make(const std::string& label) override;
  std::unique_ptr<platform::RepeatingTimer> repeat(double intervalSeconds,
                                                   std::function<void()> fire) override;

  /// Runs what waits, and what that brings along.
  void runUntilIdle();

  /// Fires the timers that are due until `time`, each at its own moment and in the order of these,
  /// running until idle in between. Never goes back.
  void advanceTo(double time);

  /// Runs work, also that of other threads, until `isDone` or the time is up; true when done.
  bool runUntil(const std::function<bool()>& isDone, std::chrono::seconds atMost);

 private:
  struct Timer;
  class Queue;

  std::function<void()> nextWork();
  std::shared_ptr<Timer> nextTimer();

  double now_ = 0;
  std::mutex lock_;  ///< Guards waiting_.
  std::condition_variable posted_;
  std::deque<std::function<void()>> waiting_;
  std::vector<std::weak_ptr<Timer>> timers_;
};

}  // namespace replay
