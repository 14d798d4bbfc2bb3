#include "tests/e2e/frame_to_line/watched_queues.h"

#include <cstddef>
#include <utility>

#include "platform/std/uptime_clock.h"

namespace frame_to_line {
namespace {

thread_local FrameNumber currentFrame = 0;

double now() {
  return platform::UptimeClock().now();
}

/// For the work on one frame.
class Working {
 public:
  explicit Working(FrameNumber frame) { currentFrame = frame; }
  ~Working() { currentFrame = 0; }
  Working(const Working&) = delete;
  Working& operator=(const Working&) = delete;
};

class FramesQueue final : public platform::SerialQueue {
 public:
  FramesQueue(std::unique_ptr<platform::SerialQueue> queue, Timeline& timeline)
      : timeline_(timeline), queue_(std::move(queue)) {}

  void post(std::function<void()> work) override {
    const FrameNumber frame = timeline_.frameDelivered(now());
    queue_->post([frame, run = std::move(work)] {
      const Working working(frame);
      run();
    });
  }

 private:
  Timeline& timeline_;
  std::unique_ptr<platform::SerialQueue> queue_;
};

class VisionQueue final : public platform::SerialQueue {
 public:
  VisionQueue(std::unique_ptr<platform::SerialQueue> queue, Timeline& timeline)
      : timeline_(timeline), queue_(std::move(queue)) {}

  void post(std::function<void()> work) override {
    queue_->post([this, frame = WatchedQueues::current(), run = std::move(work)] {
      const Working working(frame);
      timeline_.analysisBegan(frame, now());
      run();
      timeline_.analysisEnded(frame, now());
    });
  }

 private:
  Timeline& timeline_;
  std::unique_ptr<platform::SerialQueue> queue_;
};

}  // namespace

std::unique_ptr<platform::SerialQueue> WatchedQueues::make(const std::string& label) {
  auto queue = queues_.make(label);
  if (label == "wavescribe.camera.frames") {
    return std::make_unique<FramesQueue>(std::move(queue), timeline_);
  }
  if (label == "wavescribe.vision") {
    return std::make_unique<VisionQueue>(std::move(queue), timeline_);
  }
  return queue;
}

void WatchedQueues::post(std::function<void()> work) {
  const FrameNumber frame = current();
  if (frame == 0) return mainQueue_.post(std::move(work));
  mainQueue_.post([this, frame, run = std::move(work)] {
    const std::size_t before = points();
    run();
    timeline_.resultApplied(frame, now(), points() > before);
  });
}

FrameNumber WatchedQueues::current() {
  return currentFrame;
}

std::size_t WatchedQueues::points() const {
  std::size_t count = 0;
  for (const strokes::Stroke& stroke : model_->store().strokes()) count += stroke.points.size();
  return count;
}

std::unique_ptr<platform::RepeatingTimer> WatchedTimers::repeat(double intervalSeconds,
                                                                std::function<void()> fire) {
  return timers_.repeat(intervalSeconds, [this, run = std::move(fire)] {
    const double began = now();
    run();
    timeline_.pictureDrawn(began);
  });
}

}  // namespace frame_to_line
