#include "recording/recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/fake_clock.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"
#include "tests/support/fake_video_writer.h"

namespace {

using platform::Error;
using platform::MediaTime;
using Status = platform::VideoWriter::Status;
using testing::ElementsAre;
using testing::IsEmpty;
using Pixel = std::array<int, 4>;

constexpr Pixel kBlack{0, 0, 0, 255};

/// A recorder on a machine of fakes, and what it has said.
struct RecorderTest : testing::Test {
  support::FakeClock clock;
  support::FakeTimerFactory timers;
  support::FakeMainQueue mainQueue;
  support::FakeVideoWriterFactory writers;
  support::VideoWriterScript& script = writers.script;
  std::optional<recording::Recorder> recorder{std::in_place, clock, timers, mainQueue, writers};
  std::vector<std::string> failures;
  std::vector<std::string> stops;
  int rendered = 0;

  RecorderTest() {
    recorder->setOnFailure([this](const std::string& message) { failures.push_back(message); });
  }

  platform::Result<void> start(recording::RenderFrame render = nullptr) {
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

  Pixel pixelOfFrame(std::size_t index, int x, int y) const {
    const std::uint8_t* p = script.frames.at(index).picture.row(y) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
  }
};

TEST_F(RecorderTest, StartsTheWriterStepByStepAndTheSessionAtZero) {
  startWell();

  EXPECT_THAT(script.steps, ElementsAre("addInput", "startWriting", "startSession"));
  EXPECT_EQ(script.path, "/videos/a.mp4");
  EXPECT_EQ(script.settings.width, 4);
  EXPECT_EQ(script.settings.height, 2);
  EXPECT_EQ(script.sessionStart, MediaTime{});
  EXPECT_DOUBLE_EQ(timers.newestInterval(), 1.0 / 30);
}

TEST_F(RecorderTest, AWriterThatCannotBeMadePassesItsErrorOnUnchanged) {
  script.makingFails = Error{"Permission denied"};

  const auto started = start();

  EXPECT_EQ(started.error().description, "Permission denied");
  EXPECT_EQ(timers.running(), 0u);
}

TEST_F(RecorderTest, ARefusedInputFailsTheStart) {
  script.acceptsInput = false;

  EXPECT_EQ(start().error().description, "The video writer did not accept the video settings.");
  EXPECT_THAT(script.steps, ElementsAre("addInput"));
}

TEST_F(RecorderTest, AWriterThatDoesNotStartFailsTheStartWithItsOwnError) {
  script.starts = false;
  script.error = Error{"No space left on device"};

  EXPECT_EQ(start().error().description, "No space left on device");
}

TEST_F(RecorderTest, AWriterThatDoesNotStartAndDoesNotSayWhyCouldNotStart) {
  script.starts = false;

  EXPECT_EQ(start().error().description, "The video writer could not start.");
}

TEST_F(RecorderTest, AFailedStartLeavesTheRecorderIdle) {
  script.starts = false;
  EXPECT_FALSE(start().ok());

  stop();

  EXPECT_EQ(timers.running(), 0u);
  EXPECT_EQ(script.made, script.ended);
  EXPECT_THAT(stops, ElementsAre("No recording is running."));
}

TEST_F(RecorderTest, AFailedStartLeavesARunningRecordingAsItWas) {
  startWell();
  tickAfter(0.0501);
  const auto before = times();
  script.makingFails = Error{"Permission denied"};
  EXPECT_FALSE(start().ok());

  tickAfter(0.05);

  EXPECT_THAT(before, ElementsAre(30));
  EXPECT_THAT(times(), ElementsAre(30, 60));
}

TEST_F(RecorderTest, TheFirstFrameCarriesTheTimeSinceTheStart) {
  startWell();

  tickAfter(0.0335);

  EXPECT_THAT(times(), ElementsAre(20));
}

TEST_F(RecorderTest, TimesFollowTheClockAndNotTheNumberOfTicks) {
  startWell();

  tickAfter(0.1001);
  tickAfter(1.5);
  tickAfter(0.05);

  EXPECT_THAT(times(), ElementsAre(60, 960, 990));
}

TEST_F(RecorderTest, TwoTicksWithinOneUnitOfTimeYieldOneFrame) {
  startWell();

  tickAfter(0.0501);
  tickAfter(0.0005);

  EXPECT_THAT(times(), ElementsAre(30));
  EXPECT_EQ(rendered, 1);
}

TEST_F(RecorderTest, AFirstFrameAtTimeZeroIsTaken) {
  startWell();

  tickAfter(0);

  EXPECT_THAT(times(), ElementsAre(0));
}

TEST_F(RecorderTest, ASecondRecordingStartsAgainAtZero) {
  startWell();
  tickAfter(10.0001);
  stop();
  startWell();

  tickAfter(0.0501);

  EXPECT_THAT(times(), ElementsAre(30));
}

TEST_F(RecorderTest, WhatIsNotPaintedIsBlack) {
  ASSERT_TRUE(start([](const pixels::DrawingContext& context, pixels::Size) {
                context.pixels.row(0)[4] = 200;  // One pixel, second of the first row.
              }).ok());

  tickAfter(0.05);

  EXPECT_EQ(pixelOfFrame(0, 0, 0), kBlack);
  EXPECT_EQ(pixelOfFrame(0, 1, 0), (Pixel{200, 0, 0, 255}));
  EXPECT_EQ(pixelOfFrame(0, 3, 1), kBlack);
}

TEST_F(RecorderTest, TheRenderClosureGetsTheWholeFrame) {
  pixels::Size size;
  pixels::DrawingContext context;
  ASSERT_TRUE(start([&](const pixels::DrawingContext& c, pixels::Size s) {
                context = c;
                size = s;
              }).ok());

  tickAfter(0.05);

  EXPECT_EQ(size, (pixels::Size{4, 2}));
  EXPECT_EQ(context.pixels.width, 4);
  EXPECT_EQ(context.pixels.height, 2);
  EXPECT_EQ(context.deviceScale, 1);
}

TEST_F(RecorderTest, ATickIsDroppedSilentlyWhileTheWriterIsNotReady) {
  startWell();
  script.ready = false;
  tickAfter(0.05);
  script.ready = true;

  tickAfter(0.0501);

  EXPECT_THAT(times(), ElementsAre(60));
  EXPECT_EQ(rendered, 1);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecorderTest, ATickIsDroppedSilentlyWhileTheWriterIsNotWriting) {
  startWell();
  script.status = Status::unknown;

  tickAfter(0.05);

  EXPECT_EQ(rendered, 0);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecorderTest, ATickIsDroppedSilentlyWithoutABuffer) {
  startWell();
  script.hasBuffers = false;

  tickAfter(0.05);

  EXPECT_EQ(rendered, 0);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecorderTest, AFrameThatWasNotTakenLeavesItsTimeToTheNext) {
  startWell();
  script.appends = false;
  tickAfter(0.0501);
  script.appends = true;

  tickAfter(0);

  EXPECT_THAT(times(), ElementsAre(30));
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecorderTest, AFailedWriterIsReportedOnceAndNoTicksFollow) {
  startWell();
  script.status = Status::failed;
  script.error = Error{"No space left on device"};

  tickAfter(0.05);
  tickAfter(0.05);

  EXPECT_THAT(failures, ElementsAre("No space left on device"));
  EXPECT_EQ(timers.running(), 0u);
  EXPECT_EQ(rendered, 0);
}

TEST_F(RecorderTest, AFailedWriterThatDoesNotSayWhyIsReportedAsUnknown) {
  startWell();
  script.status = Status::failed;

  tickAfter(0.05);

  EXPECT_THAT(failures, ElementsAre("Unknown writer error."));
}

TEST_F(RecorderTest, AFailedWriterWithNobodyListeningOnlyEndsTheTicks) {
  recorder->setOnFailure(nullptr);
  startWell();
  script.status = Status::failed;

  tickAfter(0.05);

  EXPECT_EQ(timers.running(), 0u);
}

TEST_F(RecorderTest, StoppingAfterAFailureFailsWithTheWritersErrorAtOnce) {
  startWell();
  script.status = Status::failed;
  script.error = Error{"No space left on device"};
  tickAfter(0.05);

  stop();

  EXPECT_THAT(stops, ElementsAre("No space left on device"));
  EXPECT_EQ(script.ended, 1);
}

TEST_F(RecorderTest, StoppingAfterAFailureWithoutAReasonCouldNotStart) {
  startWell();
  script.status = Status::failed;

  stop();

  EXPECT_THAT(stops, ElementsAre("The video writer could not start."));
}

TEST_F(RecorderTest, TheFailureHandlerMayStopTheRecording) {
  recorder->setOnFailure([this](const std::string&) { stop(); });
  startWell();
  script.status = Status::failed;
  script.error = Error{"Input/output error"};

  tickAfter(0.05);

  EXPECT_THAT(stops, ElementsAre("Input/output error"));
}

TEST_F(RecorderTest, StoppingFinishesTheFileAndTellsOnTheMainThread) {
  startWell();
  tickAfter(0.05);

  stop();
  const auto beforeTheQueueRan = stops;
  mainQueue.drain();

  EXPECT_THAT(beforeTheQueueRan, IsEmpty());
  EXPECT_THAT(stops, ElementsAre("/videos/a.mp4"));
  EXPECT_THAT(script.steps, ElementsAre("addInput", "startWriting", "startSession",
                                        "markAsFinished", "finishWriting"));
  EXPECT_EQ(timers.running(), 0u);
  EXPECT_EQ(script.ended, 1);
}

TEST_F(RecorderTest, ARecordingStoppedBeforeTheFirstTickIsFinishedLikeAnyOther) {
  startWell();

  stop();
  mainQueue.drain();

  EXPECT_THAT(script.frames, IsEmpty());
  EXPECT_THAT(stops, ElementsAre("/videos/a.mp4"));
}

TEST_F(RecorderTest, AFinishThatFailsTellsTheWritersError) {
  startWell();
  script.statusWhenFinished = Status::failed;
  script.error = Error{"No space left on device"};

  stop();
  mainQueue.drain();

  EXPECT_THAT(stops, ElementsAre("No space left on device"));
}

TEST_F(RecorderTest, AFinishThatFailsWithoutAReasonCouldNotStart) {
  startWell();
  script.statusWhenFinished = Status::failed;

  stop();
  mainQueue.drain();

  EXPECT_THAT(stops, ElementsAre("The video writer could not start."));
}

TEST_F(RecorderTest, ASecondStopFailsAndLeavesTheFirstAlone) {
  startWell();
  script.finishesAtOnce = false;
  stop();

  stop();
  script.finish();
  mainQueue.drain();

  EXPECT_THAT(stops, ElementsAre("No recording is running.", "/videos/a.mp4"));
}

TEST_F(RecorderTest, StoppingWithoutARecordingFailsAtOnce) {
  stop();

  EXPECT_THAT(stops, ElementsAre("No recording is running."));
}

TEST_F(RecorderTest, IsFinishingUntilTheMainThreadHasHeardOfTheEnd) {
  startWell();
  script.finishesAtOnce = false;
  stop();
  const bool afterStop = recorder->isFinishing();
  script.finish();

  mainQueue.drain();

  EXPECT_TRUE(afterStop);
  EXPECT_FALSE(recorder->isFinishing());
}

TEST_F(RecorderTest, ARecordingMayStartWhileTheLastOneIsStillBeingFinished) {
  startWell();
  script.finishesAtOnce = false;
  stop();
  startWell();
  script.status = Status::completed;
  std::exchange(script.finishing, nullptr)();

  mainQueue.drain();

  EXPECT_THAT(stops, ElementsAre("/videos/a.mp4"));
  EXPECT_EQ(script.ended, 1);
}

TEST_F(RecorderTest, ItsEndEndsTheTicksAndTheWriter) {
  startWell();

  recorder.reset();
  tickAfter(0.05);

  EXPECT_EQ(rendered, 0);
  EXPECT_EQ(script.ended, 1);
}

TEST_F(RecorderTest, AFinishThatEndsAfterTheRecorderIsHeardByNobody) {
  startWell();
  stop();

  recorder.reset();
  mainQueue.drain();

  EXPECT_THAT(stops, IsEmpty());
  EXPECT_EQ(script.ended, 1);
}

}  // namespace
