#include "tests/recording/recorder_fixture.h"

namespace recording {
namespace {

using platform::Error;
using platform::MediaTime;
using testing::ElementsAre;
using testing::IsEmpty;
using Status = platform::VideoWriter::Status;

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
  using Script = support::VideoWriterScript;
  const Script fine = script;
  for (const auto& spoil :
       {+[](Script& s) { s.makingFails = Error{"Permission denied"}; },
        +[](Script& s) { s.acceptsInput = false; }, +[](Script& s) { s.starts = false; }}) {
    script = fine;
    startWell();
    tickAfter(0.0501);
    const Script running = script;
    spoil(script);
    EXPECT_FALSE(start().ok());
    script = running;  // All writers share it; that of the running recording has not changed.

    tickAfter(0.05);

    EXPECT_THAT(times(), ElementsAre(30, 60));
    stop();
    mainQueue.drain();
  }
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

TEST_F(RecorderTest, WhoWaitsForTheFinishedFileHearsOfNoEnd) {
  startWell();
  script.finishesAtOnce = false;
  stop();

  recorder->waitUntilFinished();

  EXPECT_EQ(script.ended, 1);
  EXPECT_FALSE(recorder->isFinishing());
  script.finish();
  mainQueue.drain();
  EXPECT_THAT(stops, IsEmpty());
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
}  // namespace recording
