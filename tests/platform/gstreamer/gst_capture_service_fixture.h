#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "capture/camera_source.h"
#include "platform/gstreamer/gst_capture_service.h"
#include "platform/std/thread_queue_factory.h"
#include "platform/std/uptime_clock.h"
#include "tests/support/colour_bars.h"
#include "tests/support/desktop_session.h"

namespace platform::gstreamer {

using capture::CameraSource;
using support::DesktopSession;
using support::Pictures;
using support::VirtualCamera;

inline constexpr const char* kHighDefinition =
    "video/x-raw,format=YUY2,width=1280,height=720,framerate=30/1";

/// What the owner of a camera source hears, from any thread.
class Listener {
 public:
  void listenTo(CameraSource& source) {
    source.setOnFrame([this](const pixels::PixelBuffer& frame, double time) {
      const std::lock_guard guard(lock_);
      frame_ = frame;
      times_.push_back(time);
    });
    source.setOnError([this](const std::string& message, const std::string& details) {
      const std::lock_guard guard(lock_);
      errors_.emplace_back(message, details);
    });
    source.setOnReturn([this] { hearReturn(); });
  }

  std::size_t frames() const {
    const std::lock_guard guard(lock_);
    return times_.size();
  }
  pixels::PixelBuffer frame() const {
    const std::lock_guard guard(lock_);
    return frame_;
  }
  std::vector<double> times() const {
    const std::lock_guard guard(lock_);
    return times_;
  }
  std::vector<std::pair<std::string, std::string>> errors() const {
    const std::lock_guard guard(lock_);
    return errors_;
  }
  void hearReturn() { ++returns_; }
  int returns() const { return returns_; }

 private:
  mutable std::mutex lock_;
  pixels::PixelBuffer frame_;
  std::vector<double> times_;
  std::vector<std::pair<std::string, std::string>> errors_;
  std::atomic<int> returns_ = 0;
};

/// Seconds until `condition` held, or none after `limitSeconds`.
template <class Condition>
std::optional<double> secondsUntil(Condition condition, double limitSeconds) {
  const double start = UptimeClock().now();
  while (!condition()) {
    if (UptimeClock().now() - start > limitSeconds) return std::nullopt;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return UptimeClock().now() - start;
}

class GstCaptureServiceTest : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = DesktopSession::missing()) GTEST_SKIP() << "No PipeWire: " << *missing;
    desktop.emplace();
    desktop->startPipeWire();
  }

  void TearDown() override {
    source.reset();
    camera.reset();
    desktop.reset();
  }

  void plugIn(const std::string& caps = kHighDefinition, Pictures pictures = Pictures::colourBars) {
    camera.emplace(caps, pictures);
    ASSERT_TRUE(secondsUntil([&] { return service.defaultVideoDevice() != nullptr; }, 20));
  }

  /// For a test that starts again and again: GStreamer's virtual camera falls silent for good after
  /// a few readers, because frames that are under way when one leaves never come back to it.
  void unplug() {
    camera.reset();
    ASSERT_TRUE(secondsUntil([&] { return service.defaultVideoDevice() == nullptr; }, 20));
  }

  void start() {
    source.emplace(service, queues);
    listener.listenTo(*source);
    source->start();
  }

  bool framesReach(std::size_t count) {
    return secondsUntil([&] { return listener.frames() >= count; }, 20).has_value();
  }

  bool moreFrames() { return framesReach(listener.frames() + 5); }

  std::optional<double> secondsUntilAnError() {
    const auto errors = listener.errors().size();
    return secondsUntil([&] { return listener.errors().size() > errors; }, 20);
  }

  /// Starts the camera again whenever it is said to be back, as its owner does.
  void startOnReturn() {
    source->setOnReturn([this] {
      listener.hearReturn();
      source->start();
    });
  }

  double secondsToEnd() {
    const double began = UptimeClock().now();
    source.reset();
    return UptimeClock().now() - began;
  }

  std::optional<DesktopSession> desktop;
  std::optional<VirtualCamera> camera;
  GstCaptureService service;
  ThreadQueueFactory queues;
  Listener listener;
  std::optional<CameraSource> source;
};

}  // namespace platform::gstreamer
