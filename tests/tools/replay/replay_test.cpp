#include "tools/replay/replay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "pixels/surface.h"
#include "platform/png/png_encoder.h"
#include "platform/recorded/recorded_hand_pose_request.h"
#include "platform/std/uptime_clock.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/scoped_disk_limit.h"
#include "tests/support/temporary_folder.h"

namespace replay {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr const char* kClip = WAVESCRIBE_ASSETS "/sample.webm";
constexpr const char* kHands = WAVESCRIBE_ASSETS "/sample-hands.jsonl";
constexpr int kFrames = 521;

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of a trace without the times that each machine and day has its own of.
std::vector<nlohmann::json> traceOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  std::vector<nlohmann::json> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(nlohmann::json::parse(line));
    lines.back().erase("milliseconds");
  }
  return lines;
}

/// A folder of the same picture again and again, numbered from 0.
void writePictures(const std::filesystem::path& folder, int count,
                   const pixels::Surface& picture = pixels::Surface(16, 8)) {
  const auto png = platform::PngEncoder().encodePng(picture).value();
  for (int i = 0; i < count; ++i) {
    std::ofstream(folder / (std::to_string(i) + ".png"), std::ios::binary)
        .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
  }
}

/// A log in `folder` of so many frames in which no hand is seen.
std::filesystem::path noHands(const std::filesystem::path& folder, int frames) {
  std::filesystem::path path = folder / "hands.jsonl";
  std::ofstream log(path);
  for (int i = 0; i < frames; ++i) log << platform::toLine({.time = i / 30.0}) << '\n';
  return path;
}

TEST(Replay, TheSameClipAndHandsGiveTheSameTraceAndPicture) {
  const support::TemporaryFolder folder;
  for (const char* run : {"first", "second"}) {
    Options options{.clip = kClip};
    options.hands = kHands;
    options.picture = folder / (std::string(run) + ".png");
    options.trace = folder / (std::string(run) + ".jsonl");
    const auto summary = replay::run(options);
    ASSERT_TRUE(summary) << summary.error().description;
    EXPECT_EQ(summary.value().frames, kFrames);
    EXPECT_EQ(summary.value().strokes, 5);
    EXPECT_EQ(summary.value().problem, std::nullopt);
  }
  EXPECT_THAT(traceOf(folder / "first.jsonl"), SizeIs(kFrames));
  EXPECT_EQ(traceOf(folder / "first.jsonl"), traceOf(folder / "second.jsonl"));
  EXPECT_FALSE(contentOf(folder / "first.png").empty());
  EXPECT_EQ(contentOf(folder / "first.png"), contentOf(folder / "second.png"));
}

TEST(Replay, HandsThatWereRecordedGiveTheSamePaintingAgain) {
  const support::TemporaryFolder folder;
  Options first{.clip = kClip};
  first.hands = kHands;
  first.recordHands = folder / "hands.jsonl";
  first.picture = folder / "first.png";
  Options second{.clip = kClip};
  second.hands = first.recordHands;
  second.picture = folder / "second.png";

  ASSERT_TRUE(replay::run(first));
  ASSERT_TRUE(replay::run(second));

  EXPECT_EQ(contentOf(folder / "first.png"), contentOf(folder / "second.png"));
}

TEST(Replay, TheTraceTellsOfEveryFrame) {
  const support::TemporaryFolder folder;
  Options options{.clip = kClip};
  options.hands = kHands;
  options.trace = folder / "trace.jsonl";
  ASSERT_TRUE(replay::run(options));

  std::ifstream file(*options.trace);
  bool drew = false;
  bool spread = false;
  int frame = 0;
  for (std::string line; std::getline(file, line); ++frame) {
    const auto json = nlohmann::json::parse(line);
    EXPECT_EQ(json.at("frame"), frame);
    EXPECT_NEAR(json.at("time").get<double>(), frame / 30.0, 0.001);
    for (const char* stage : {"decode", "detect", "model", "draw"}) {
      EXPECT_GE(json.at("milliseconds").at(stage).get<double>(), 0) << stage;
    }
    EXPECT_EQ(json.at("hands").empty(), json.at("handCount") == 0);
    drew |= json.at("status") == "Drawing" && json.at("pen").at("down") == true;
    spread |= json.at("spread").get<bool>();
  }
  EXPECT_EQ(frame, kFrames);
  EXPECT_TRUE(drew);
  EXPECT_TRUE(spread);
}

TEST(Replay, RecordsThePaintingAsAVideo) {
  const support::TemporaryFolder folder;
  Options options{.clip = kClip};
  options.hands = kHands;
  options.video = folder / "painting.mp4";
  const auto summary = replay::run(options);
  ASSERT_TRUE(summary) << summary.error().description;

  const support::RecordedVideo video =
      support::readVideo(*options.video, support::Pictures::leaveOut);
  EXPECT_EQ(video.error, "");
  EXPECT_EQ(video.codec, "h264");
  EXPECT_EQ(video.width, 1280);
  EXPECT_EQ(video.height, 720);
  EXPECT_NEAR(static_cast<double>(video.frames.size()), kFrames, 1);
  EXPECT_NEAR(video.seconds, kFrames / 30.0, 0.1);
}

TEST(Replay, TheVideoHasTheShapeOfTheClip) {
  const support::TemporaryFolder clip;
  writePictures(clip.path(), 3, pixels::Surface(16, 12));
  const support::TemporaryFolder folder;
  Options options{.clip = clip.path()};
  options.hands = noHands(folder.path(), 3);
  options.video = folder / "painting.mp4";

  ASSERT_TRUE(replay::run(options));

  const support::RecordedVideo video = support::readVideo(*options.video);
  EXPECT_EQ(video.width, 1280);
  EXPECT_EQ(video.height, 960);
  EXPECT_EQ(video.frames.size(), 3u);
}

TEST(Replay, AVideoThatFailsMidwayIsAFailure) {
  const support::TemporaryFolder folder;
  Options options{.clip = kClip};
  options.hands = kHands;
  options.video = folder / "painting.mp4";
  const support::ScopedDiskLimit full(100'000);

  const auto summary = replay::run(options);

  ASSERT_FALSE(summary);
  EXPECT_THAT(summary.error().description, HasSubstr("Recording stopped because of an error."));
}

TEST(Replay, InRealTimeTakesAsLongAsTheFramesWouldFromACamera) {
  const support::TemporaryFolder folder;
  writePictures(folder.path(), 10);
  const support::TemporaryFolder logs;
  Options options{.clip = folder.path()};
  options.hands = noHands(logs.path(), 10);
  options.realtime = true;
  const double began = platform::UptimeClock().now();

  const auto summary = replay::run(options);

  ASSERT_TRUE(summary) << summary.error().description;
  EXPECT_EQ(summary.value().frames, 10);
  EXPECT_EQ(summary.value().problem, std::nullopt);
  EXPECT_GE(platform::UptimeClock().now() - began, 0.29);
}

TEST(Replay, AFrameThatComesTooLateIsDroppedAsByACamera) {
  class EverySecondFrameIsLate final : public Pace {
   public:
    bool waitFor(double) override { return ++frames_ % 2 == 1; }

   private:
    int frames_ = 0;
  };
  const support::TemporaryFolder folder;
  writePictures(folder.path(), 6);
  std::vector<platform::HandLogEntry> nobody;
  for (int i = 0; i < 6; ++i) nobody.push_back({.time = i / 30.0});
  platform::RecordedHandPoseRequest detector(nobody);
  Replay replay(detector);
  EverySecondFrameIsLate pace;
  std::ostringstream trace;

  const auto summary = replay.play(*openFrames(folder.path()).value(), pace, &trace);

  ASSERT_TRUE(summary);
  EXPECT_EQ(summary.value().frames, 6);
  std::vector<bool> analysed;
  std::istringstream lines(trace.str());
  for (std::string line; std::getline(lines, line);) {
    analysed.push_back(nlohmann::json::parse(line).contains("hands"));
  }
  EXPECT_THAT(analysed, ElementsAre(true, false, true, false, true, false));
}

TEST(Replay, FramesWithoutRecordedHandsAreAProblemThatIsTold) {
  const support::TemporaryFolder folder;
  std::ofstream(folder / "hands.jsonl") << "{\"time\":0,\"hands\":[]}\n";
  Options options{.clip = kClip};
  options.hands = folder / "hands.jsonl";
  const auto summary = replay::run(options);
  ASSERT_TRUE(summary);
  EXPECT_THAT(summary.value().problem.value(),
              HasSubstr("Hand tracking had a problem. No hands were recorded for the frame"));
}

TEST(Replay, SaysWhichFileCannotBeUsed) {
  Options noClip{.clip = "no/such/clip.webm"};
  EXPECT_THAT(replay::run(noClip).error().description, HasSubstr("no/such/clip.webm"));
  Options noHands{.clip = kClip};
  noHands.hands = "no/such/hands.jsonl";
  EXPECT_THAT(replay::run(noHands).error().description, HasSubstr("no/such/hands.jsonl"));
  Options noPlace{.clip = kClip};
  noPlace.hands = kHands;
  noPlace.trace = "no/such/trace.jsonl";
  EXPECT_THAT(replay::run(noPlace).error().description, HasSubstr("no/such/trace.jsonl"));
}

}  // namespace
}  // namespace replay
