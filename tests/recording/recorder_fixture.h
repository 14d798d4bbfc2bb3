#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "recording/recorder.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"
#include "tests/support/fake_video_writer.h"

namespace recording {

/// A recorder on a machine of fakes, and what it has said.
struct RecorderTest : testing::Test {
  support::FakeClock clock;
  support::FakeTimerFactory timers;
  support::FakeMainQueue mainQueue;
  support::FakeVideoWriterFactory writers;
  support::VideoWriterScript& script = writers.script;
  std::optional<Recorder> recorder{std::in_place, clock, timers, mainQueue, writers};
  std::vector<std::string> failures;
  std::vector<std::string> stops;
  int rendered = 0;

  RecorderTest() {
    recorder->setOnFailure([this](const std::string& message) { failures.push_back(message); });
  }

  platform::Result<void> start(RenderFrame render = nullptr) {
    if (!render) {
      render = [this](const pixels::DrawingContext&, pixels::Size) { ++rendered; };
    }
    return recorder->start("/videos/a.mp4", 4, 2, 30, std::move(render));
  }
  void startWell() { ASSERT_TRUE(start().ok()); }

  void tickAfter(double seconds) {
    clock.advance(seconds);
    timers.fire();
  }

  void stop() {
    recorder->stop([this](const platform::Result<std::filesystem::path>& result) {
      stops.push_back(result ? result.value().string() : result.error().description);
    });
  }

  std::vector<std::int64_t> times() const {
    std::vector<std::int64_t> values;
    for (const auto& frame : script.frames) values.push_back(frame.time.value);
    return values;
  }
};

}  // namespace recording
