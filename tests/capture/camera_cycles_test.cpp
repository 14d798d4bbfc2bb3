#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "capture/busy_flag.h"
#include "capture/camera_source.h"
#include "capture/frame_hub.h"
#include "platform/std/thread_queue_factory.h"
#include "tests/support/pictures.h"

namespace capture {
namespace {

/// A camera that delivers, vanishes and comes back on a thread of its own, as fast as it can.
class RestlessCamera final : public platform::CaptureService {
 public:
  std::unique_ptr<platform::CaptureSession> makeSession() override {
    return std::make_unique<Session>();
  }
  std::unique_ptr<platform::CaptureDevice> defaultVideoDevice() override {
    return std::make_unique<Device>();
  }

 private:
  class Input final : public platform::CaptureInput {};

  class Device final : public platform::CaptureDevice {
   public:
    std::string displayName() const override { return "Restless Camera"; }
    platform::Result<std::unique_ptr<platform::CaptureInput>> open() override {
      return std::unique_ptr<platform::CaptureInput>(std::make_unique<Input>());
    }
  };

  class Session final : public platform::CaptureSession {
   public:
    ~Session() override { thread_ = {}; }
    void setEvents(platform::CaptureEvents events) override {
      const std::lock_guard guard(eventsLock_);
      events_ = std::move(events);
    }
    bool canUse(platform::CapturePreset, const platform::CaptureInput&) const override {
      return true;
    }
    void use(platform::CapturePreset) override {}
    bool canAddInput(const platform::CaptureInput&) const override { return true; }
    void addInput(std::unique_ptr<platform::CaptureInput>) override {}
    bool canAddOutput() const override { return true; }
    void addOutput(platform::SerialQueue& queue, platform::CaptureHandler handler) override {
      queue_ = &queue;
      handler_ = std::move(handler);
    }
    bool isRunning() const override { return running_; }
    void start() override {
      thread_ = {};
      running_ = true;
      thread_ = std::jthread([this] { deliverAndVanish(); });
    }

   private:
    void deliverAndVanish() {
      for (int i = 0; i < 3; ++i) {
        queue_->post([handler = handler_, i] { handler(support::greyFrame(4, 3, i)); });
      }
      running_ = false;
      const std::lock_guard guard(eventsLock_);
      if (events_.stopped) events_.stopped("It vanished.");
      if (events_.returned) events_.returned();
    }

    std::mutex eventsLock_;
    platform::CaptureEvents events_;
    platform::SerialQueue* queue_ = nullptr;
    platform::CaptureHandler handler_;
    std::atomic<bool> running_ = false;
    std::jthread thread_;
  };
};

/// What one source's callbacks work on. They share it, so that one that came too late finds it.
struct Cycle {
  FrameHub hub;
  BusyFlag busy;
  std::atomic<int> returns = 0;
  std::atomic<bool> ended = false;
};

// WAVESCRIBE_FAKE_CAMERA_CYCLES sets the number.
TEST(CameraCycles, StartVanishReturnAndEndInAnyOrderLeaveNothingBehind) {
  const char* wanted = std::getenv("WAVESCRIBE_FAKE_CAMERA_CYCLES");
  const int cycles = wanted ? std::atoi(wanted) : 500;
  platform::ThreadQueueFactory queues;
  RestlessCamera camera;
  std::atomic<int> late = 0;
  for (int i = 0; i < cycles; ++i) {
    const auto cycle = std::make_shared<Cycle>();
    {
      CameraSource source(camera, queues);
      source.setOnFrame([cycle, &late](const pixels::PixelBuffer& frame, double) {
        if (cycle->ended) return void(++late);
        cycle->hub.update(frame);
        if (cycle->busy.tryClaim()) cycle->busy.release();
      });
      source.setOnError([cycle, &late](const std::string&, const std::string&) {
        if (cycle->ended) ++late;
      });
      source.setOnReturn([cycle, &late, &source] {
        if (cycle->ended) return void(++late);
        if (++cycle->returns < 3) source.start();
      });
      source.start();
      while (cycle->returns < i % 4) std::this_thread::yield();
      if (const auto picture = cycle->hub.image()) {
        EXPECT_EQ(picture->width(), 4);
      }
    }
    cycle->ended = true;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(100));  // For what is still on its way.
  EXPECT_EQ(late, 0);
}

}  // namespace
}  // namespace capture
