#include <algorithm>
#include <chrono>
#include <string>

#include "recording/recorder.h"
#include "tests/platform/ffmpeg/video_writing_fixture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"

namespace platform::ffmpeg {
namespace {

using support::readVideo;
using support::RecordedVideo;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Status = VideoWriter::Status;
using Clock = std::chrono::steady_clock;
using FfmpegVideoWriterTest = VideoWritingTest;

constexpr std::chrono::seconds kPatience(60);  // With a busy machine.

TEST_F(FfmpegVideoWriterTest, AFinishedVideoHasTheSizeTheFramesAndTheTimesItWasGiven) {
  start();
  for (const std::int64_t time : {20, 39, 60, 100, 700, 701}) appendPlain(time);

  finish();

  const RecordedVideo video = readVideo(path);
  EXPECT_EQ(writer->status(), Status::completed);
  EXPECT_EQ(video.error, "");
  EXPECT_EQ(video.codec, "h264");
  EXPECT_EQ(video.width, 64);
  EXPECT_EQ(video.height, 48);
  EXPECT_THAT(video.timeBase, ElementsAre(1, 600));
  EXPECT_THAT(video.times(), ElementsAre(20, 39, 60, 100, 700, 701));
  EXPECT_NEAR(video.seconds, 721.0 / 600, 1e-5);
}

TEST_F(FfmpegVideoWriterTest, AFinishedVideoHasItsIndexInFrontAndNoFragments) {
  start();
  for (int i = 1; i <= 40; ++i) appendPlain(20 * i);

  finish();

  EXPECT_THAT(readVideo(path).boxes, ElementsAre("ftyp", "moov", "free", "free", "mdat"));
  EXPECT_THAT(folder.names(), ElementsAre(path.filename().string()));
}

TEST_F(FfmpegVideoWriterTest, AVideoIsTaggedAsEveryPlayerUnderstands) {
  start();
  appendPlain(20);

  finish();

  const RecordedVideo video = readVideo(path);
  EXPECT_EQ(video.pixelFormat, "yuv420p");
  EXPECT_EQ(video.range, "tv");
  EXPECT_EQ(video.primaries, "bt709");
  EXPECT_EQ(video.transfer, "bt709");
  EXPECT_EQ(video.matrix, "bt709");
  EXPECT_EQ(video.chromaLocation, "left");
}

TEST_F(FfmpegVideoWriterTest, PureColoursComeBackAsTheyWere) {
  const unsigned colours[][3] = {{0, 0, 0},   {255, 255, 255}, {255, 0, 0},   {0, 255, 0},
                                 {0, 0, 255}, {255, 255, 0},   {255, 0, 255}, {0, 255, 255}};
  start({.width = 128, .height = 16, .framesPerSecond = 30});
  append(20, [&](std::uint8_t* pixel, int x, int) {
    const auto& colour = colours[x / 16];
    set(pixel, colour[0], colour[1], colour[2]);
  });

  finish();

  const RecordedVideo video = readVideo(path);
  for (int i = 0; i < 8; ++i) {
    for (int channel = 0; channel < 3; ++channel) {
      EXPECT_NEAR(video.frames.at(0).picture.row(8)[4 * (16 * i + 8) + channel],
                  colours[i][channel], 3)
          << "colour " << i << ", channel " << channel;
    }
  }
}

TEST_F(FfmpegVideoWriterTest, ThereAreNoBFramesAndAKeyFrameAtLeastEverySecond) {
  start();
  for (int i = 0; i < 150; ++i) appendNoise(20 + 20 * i + (i % 3));

  finish();

  std::int64_t lastKey = 20;
  for (const auto& frame : readVideo(path, support::Pictures::leaveOut).frames) {
    EXPECT_NE(frame.kind, 'B');
    EXPECT_LE(frame.time - lastKey, 600);
    if (frame.isKey) lastKey = frame.time;
  }
}

TEST_F(FfmpegVideoWriterTest, FramesThatComeSlowlyStillHaveAKeyFrameEverySecond) {
  for (const int gap : {90, 130, 250, 400}) {
    start();
    for (int i = 1; i <= 20; ++i) appendPlain(i * gap);

    finish();

    std::int64_t lastKey = gap;
    for (const auto& frame : readVideo(path, support::Pictures::leaveOut).frames) {
      EXPECT_LE(frame.time - lastKey, 600) << gap;
      if (frame.isKey) lastKey = frame.time;
    }
  }
}

TEST_F(FfmpegVideoWriterTest, TheFilePlaysWhileItIsBeingWritten) {
  start();
  for (int i = 1; i <= 90; ++i) appendPlain(20 * i);

  // All but the last fragment, at most, reach the file without being asked to.
  RecordedVideo video = readVideo(path);
  for (const auto deadline = Clock::now() + kPatience;
       video.frames.size() < 70 && Clock::now() < deadline; video = readVideo(path))
    std::this_thread::yield();

  EXPECT_EQ(video.error, "");
  ASSERT_GE(video.frames.size(), 70u);
  EXPECT_EQ(video.times().front(), 20);
  EXPECT_EQ(video.times().back(), 20 * static_cast<std::int64_t>(video.frames.size()));
}

TEST_F(FfmpegVideoWriterTest, AWriterThatEndsUnfinishedLeavesAllFramesInAFileThatPlays) {
  start();
  for (int i = 1; i <= 50; ++i) appendPlain(20 * i);

  writer.reset();

  const RecordedVideo video = readVideo(path);
  EXPECT_EQ(video.error, "");
  EXPECT_EQ(video.frames.size(), 50u);
  EXPECT_EQ(video.times().back(), 1000);
  EXPECT_THAT(video.boxes, Contains("moof"));
}

TEST_F(FfmpegVideoWriterTest, AnEndWhileFinishingWaitsForTheFinishedFile) {
  start();
  for (int i = 1; i <= 30; ++i) appendPlain(20 * i);
  bool ended = false;
  writer->finishWriting([&] { ended = true; });

  writer.reset();

  EXPECT_TRUE(ended);
  EXPECT_THAT(readVideo(path).boxes, Not(Contains("moof")));
}

TEST_F(FfmpegVideoWriterTest, AnExistingFileIsReplaced) {
  start();
  for (int i = 1; i <= 90; ++i) appendNoise(20 * i);
  finish();
  start();
  appendPlain(33);

  finish();

  EXPECT_THAT(readVideo(path).times(), ElementsAre(33));
}

TEST_F(FfmpegVideoWriterTest, AVideoMayHaveTheLongestNameThatAFolderKnows) {
  path = folder / (std::string(251, 'v') + ".mp4");
  start();
  appendPlain(20);

  finish();

  EXPECT_EQ(writer->status(), Status::completed);
  EXPECT_THAT(readVideo(path).boxes, Not(Contains("moof")));
}

TEST_F(FfmpegVideoWriterTest, ARecordingLastsAsLongAsTheClockSays) {
  support::FakeClock clock;
  support::FakeTimerFactory timers;
  support::FakeMainQueue mainQueue;
  recording::Recorder recorder(clock, timers, mainQueue, factory);
  int taken = 0;
  ASSERT_TRUE(recorder
                  .start(path, 64, 48, 30,
                         [&](const pixels::DrawingContext& context, pixels::Size) {
                           context.pixels.row(0)[1] = 255;
                           ++taken;
                         })
                  .ok());
  const double start = clock.now();
  const auto deadline = Clock::now() + kPatience;
  for (int i = 1; i <= 300; ++i) {
    clock.advance(1.0 / 30 + (i % 5 == 0 ? 0.007 : 0));
    // The clock stands still meanwhile, so the encoder may take its time.
    while (taken < i && Clock::now() < deadline) timers.fire();
  }
  const double lasted = clock.now() - start;
  bool saved = false;

  recorder.stop([&](const auto& result) { saved = result.ok(); });
  while (recorder.isFinishing() && Clock::now() < deadline) mainQueue.drain();

  const RecordedVideo video = readVideo(path, support::Pictures::leaveOut);
  EXPECT_TRUE(saved);
  EXPECT_EQ(video.frames.size(), 300u);
  EXPECT_NEAR(video.seconds, lasted, 1.0 / 30 + 0.001);
  const auto times = video.times();
  EXPECT_EQ(std::adjacent_find(times.begin(), times.end(), std::greater_equal<>()), times.end());
}

}  // namespace
}  // namespace platform::ffmpeg
