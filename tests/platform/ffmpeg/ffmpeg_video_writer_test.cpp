#include "platform/ffmpeg/ffmpeg_video_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "recording/recorder.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"
#include "tests/support/scoped_disk_limit.h"
#include "tests/support/scoped_ordinary_user.h"
#include "tests/support/temporary_folder.h"

namespace {

using platform::MediaTime;
using platform::VideoSettings;
using platform::VideoWriter;
using platform::ffmpeg::FfmpegVideoWriterFactory;
using support::readVideo;
using support::RecordedVideo;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Status = VideoWriter::Status;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience(60);  // With a busy machine.

struct FfmpegVideoWriterTest : testing::Test {
  support::TemporaryFolder folder;
  std::filesystem::path path = folder / "a video: 1.mp4";
  FfmpegVideoWriterFactory factory;
  std::unique_ptr<VideoWriter> writer;

  void start(const VideoSettings& settings = {64, 48, 30}) {
    writer.reset();
    auto made = factory.make(path);
    ASSERT_TRUE(made.ok());
    writer = std::move(made).value();
    ASSERT_TRUE(writer->addInput(settings));
    ASSERT_TRUE(writer->startWriting());
    writer->startSession(MediaTime{});
  }

  template <class Paint>
  void append(std::int64_t time, Paint paint) {
    while (!writer->isReadyForMoreMediaData() && writer->status() == Status::writing)
      std::this_thread::yield();
    pixels::Surface frame = writer->takeBuffer().value();
    for (int y = 0; y < frame.height(); ++y) {
      for (int x = 0; x < frame.width(); ++x) paint(frame.view().row(y) + 4 * x, x, y);
    }
    writer->append(std::move(frame), MediaTime{time});
  }
  void appendPlain(std::int64_t time, int blue = 40, int green = 80, int red = 120) {
    append(time, [&](std::uint8_t* pixel, int, int) { set(pixel, blue, green, red); });
  }
  void appendNoise(std::int64_t time) {
    append(time, [&](std::uint8_t* pixel, int, int) {
      set(pixel, random_() & 255, random_() & 255, random_() & 255);
    });
  }

  static void set(std::uint8_t* pixel, unsigned blue, unsigned green, unsigned red) {
    pixel[0] = static_cast<std::uint8_t>(blue);
    pixel[1] = static_cast<std::uint8_t>(green);
    pixel[2] = static_cast<std::uint8_t>(red);
    pixel[3] = 255;
  }

  void finish() {
    std::promise<void> ended;
    writer->markAsFinished();
    writer->finishWriting([&] { ended.set_value(); });
    ended.get_future().wait();
  }

  std::mt19937 random_{5};
};

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

TEST_F(FfmpegVideoWriterTest, SizesThatTheFormatDoesNotKnowAreRefused) {
  for (const auto& [width, height] : {std::pair{64, 47}, {63, 48}, {0, 48}, {64, -2}}) {
    auto made = factory.make(path);
    EXPECT_FALSE(std::move(made).value()->addInput({width, height, 30})) << width << "x" << height;
  }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(FfmpegVideoWriterTest, AFolderThatIsGoneIsAnErrorWithItsReason) {
  const auto made = factory.make(folder / "gone/a.mp4");

  ASSERT_FALSE(made.ok());
  EXPECT_THAT(made.error().description, EndsWith("gone/a.mp4: No such file or directory"));
}

TEST_F(FfmpegVideoWriterTest, AFolderThatMayNotBeWrittenToIsAnErrorWithItsReason) {
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));

  const auto made = [&] {
    const support::ScopedOrdinaryUser user;  // Root may write everywhere.
    return factory.make(path);
  }();

  ASSERT_FALSE(made.ok());
  EXPECT_THAT(made.error().description, EndsWith("Permission denied"));
}

TEST_F(FfmpegVideoWriterTest, AStartOnAFullDiskFailsWithItsReasonAndLeavesNoFile) {
  auto made = factory.make(path);
  writer = std::move(made).value();
  ASSERT_TRUE(writer->addInput({64, 48, 30}));
  {
    const support::ScopedDiskLimit full(100);

    EXPECT_FALSE(writer->startWriting());
  }

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description, EndsWith("File too large"));
  writer.reset();
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(FfmpegVideoWriterTest, ADiskThatGetsFullFailsTheWriterAndWhatWasWrittenPlays) {
  const support::ScopedDiskLimit full(200'000);
  start();

  std::int64_t time = 0;
  while (writer->status() == Status::writing && time < 20'000) appendNoise(time += 20);

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description, EndsWith("File too large"));
  EXPECT_FALSE(writer->isReadyForMoreMediaData());
  const RecordedVideo video = readVideo(path, support::Pictures::leaveOut);
  EXPECT_EQ(video.error, "");
  EXPECT_GT(video.frames.size(), 15u);
  EXPECT_EQ(video.boxes.back(), "mdat");
}

TEST_F(FfmpegVideoWriterTest, FinishingAWriterThatHasFailedTellsSo) {
  const support::ScopedDiskLimit full(50'000);
  start();
  std::int64_t time = 0;
  while (writer->status() == Status::writing && time < 20'000) appendNoise(time += 20);

  finish();

  EXPECT_EQ(writer->status(), Status::failed);
}

TEST_F(FfmpegVideoWriterTest, ARewriteThatFailsLeavesTheRecordingAndTellsSo) {
  start();
  for (int i = 1; i <= 50; ++i) appendPlain(20 * i);
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));

  {
    const support::ScopedOrdinaryUser user;  // Root may write everywhere.
    finish();
  }
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description, HasSubstr("is complete and plays"));
  EXPECT_THAT(writer->error()->description, EndsWith("Permission denied"));
  const RecordedVideo video = readVideo(path);
  EXPECT_EQ(video.error, "");
  EXPECT_EQ(video.frames.size(), 50u);
}

TEST_F(FfmpegVideoWriterTest, AVideoMayHaveTheLongestNameThatAFolderKnows) {
  path = folder / (std::string(251, 'v') + ".mp4");
  start();
  appendPlain(20);

  finish();

  EXPECT_EQ(writer->status(), Status::completed);
  EXPECT_THAT(readVideo(path).boxes, Not(Contains("moof")));
}

TEST_F(FfmpegVideoWriterTest, AVideoWithoutAFrameIsAnErrorAndNoFile) {
  start();

  finish();

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_EQ(writer->error()->description, "No frame was recorded.");
  writer.reset();
  EXPECT_THAT(folder.names(), IsEmpty());
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
