#pragma once

#include <functional>
#include <memory>
#include <string>

#include "model/app_model.h"
#include "platform/main_queue.h"
#include "platform/serial_queue.h"
#include "platform/timer_factory.h"
#include "tests/e2e/frame_to_line/timeline.h"

namespace frame_to_line {

/// The program's queues, which write into a timeline when each frame's work is done: work that is
/// posted while a frame is worked on belongs to that frame. All outlive the model.
class WatchedQueues final : public platform::SerialQueueFactory, public platform::MainQueue {
 public:
  WatchedQueues(platform::SerialQueueFactory& queues, platform::MainQueue& mainQueue,
                Timeline& timeline)
      : queues_(queues), mainQueue_(mainQueue), timeline_(timeline) {}

  /// The painting that hands make longer; set before the first frame.
  void setModel(const model::AppModel& model) { model_ = &model; }

  std::unique_ptr<platform::SerialQueue> make(const std::string& label) override;
  void post(std::function<void()> work) override;

  /// The frame that this thread works on; 0 when it works on none.
  static FrameNumber current();

 private:
  std::size_t points() const;

  platform::SerialQueueFactory& queues_;
  platform::MainQueue& mainQueue_;
  Timeline& timeline_;
  const model::AppModel* model_ = nullptr;
};

/// The program's timers; the one of the window draws a picture each time it fires.
class WatchedTimers final : public platform::TimerFactory {
 public:
  WatchedTimers(platform::TimerFactory& timers, Timeline& timeline)
      : timers_(timers), timeline_(timeline) {}

  std::unique_ptr<platform::RepeatingTimer> repeat(double intervalSeconds,
                                                   std::function<void()> fire) override;

 private:
  platform::TimerFactory& timers_;
  Timeline& timeline_;
};

}  // namespace frame_to_line
