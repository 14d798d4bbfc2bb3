// What is left of a recording when the program or the disk fails. tests/recording_survival.sh runs
// these many times over.

#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>

#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "recording/recorder.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"
#include "tests/support/temporary_folder.h"

namespace {

using support::Pictures;
using support::readVideo;
using support::RecordedVideo;
using testing::EndsWith;

constexpr double kMostLostSeconds = 1.2;

int timesFromEnvironment(const char* name, int otherwise) {
  const char* value = std::getenv(name);
  return value ? std::atoi(value) : otherwise;
}

/// The program record_canvas in a process of its own.
class RecordingProcess {
 public:
  RecordingProcess(const std::filesystem::path& path, double seconds) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    process_ = fork();
    if (process_ == 0) {
      dup2(ends[1], STDOUT_FILENO);
      close(ends[0]);
      close(ends[1]);
      execl(RECORD_CANVAS, RECORD_CANVAS, path.c_str(), std::to_string(seconds).c_str(), nullptr);
      _exit(127);
    }
    close(ends[1]);
    output_ = fdopen(ends[0], "r");
  }
  ~RecordingProcess() {
    kill();
    std::fclose(output_);
    waitpid(process_, nullptr, 0);
  }
  RecordingProcess(const RecordingProcess&) = delete;
  RecordingProcess& operator=(const RecordingProcess&) = delete;

  /// Waits until it has said `word`; false when it ended before.
  bool waitFor(const std::string& word) {
    while (readLine()) {
      if (word_ == word) return true;
    }
    return false;
  }

  void kill() { ::kill(process_, SIGKILL); }

  /// The time of the newest frame that it said it has drawn.
  double lastFrame() {
    while (readLine()) {
    }
    return lastFrame_;
  }

 private:
  bool readLine() {
    char word[32];
    double time = 0;
    if (std::fscanf(output_, "%31s %lf", word, &time) != 2) return false;
    word_ = word;
    if (word_ == "frame") lastFrame_ = time;
    return true;
  }

  pid_t process_ = -1;
  std::FILE* output_ = nullptr;
  std::string word_;
  double lastFrame_ = 0;
};

std::mt19937& randomness() {
  static std::mt19937 generator(std::random_device{}());
  return generator;
}

double randomSeconds(double least, double most) {
  return std::uniform_real_distribution(least, most)(randomness());
}

void sleepFor(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

double lastTimeIn(const RecordedVideo& video) {
  return video.frames.empty() ? 0 : static_cast<double>(video.frames.back().time) / 600;
}

/// What a killed recording left behind.
struct Remains {
  RecordedVideo video;
  double lostSeconds = 0;  ///< Drawn and not in the file.
};

/// Starts a recording of `seconds` and kills it at a random moment of the `window` seconds that
/// begin when it says `word`.
Remains killedRecording(const std::filesystem::path& path, double seconds, const char* word,
                        double window) {
  RecordingProcess process(path, seconds);
  EXPECT_TRUE(process.waitFor(word));
  sleepFor(randomSeconds(0, window));
  process.kill();
  const double drawn = process.lastFrame();
  Remains remains{readVideo(path, Pictures::leaveOut)};
  remains.lostSeconds = drawn - lastTimeIn(remains.video);
  EXPECT_EQ(remains.video.error, "");
  EXPECT_LE(remains.lostSeconds, kMostLostSeconds) << "of " << drawn << " s";
  return remains;
}

TEST(Survival, ARecordingThatIsKilledPlaysUpToTheLastSecond) {
  const support::TemporaryFolder folder;
  const int kills = timesFromEnvironment("WAVESCRIBE_KILLS", 10);
  double mostLost = 0;
  for (int i = 0; i < kills; ++i)
    mostLost = std::max(mostLost, killedRecording(folder / "a.mp4", 60, "frame", 4).lostSeconds);
  std::printf("%d recordings killed, at most %.2f s lost\n", kills, mostLost);
}

TEST(Survival, ARecordingThatIsKilledWhileItIsFinishedIsComplete) {
  const support::TemporaryFolder folder;
  const int kills = timesFromEnvironment("WAVESCRIBE_KILLS", 10) / 2;
  int progressive = 0;
  for (int i = 0; i < kills; ++i) {
    const Remains remains = killedRecording(folder / "a.mp4", 1.5, "stopping", 0.6);
    if (std::ranges::count(remains.video.boxes, "moof") == 0) ++progressive;
    EXPECT_LE(folder.names().size(), 2u);  // What the kill before left behind is gone.
  }
  std::printf("%d finishing recordings killed, %d already progressive\n", kills, progressive);
}

/// A disk of its own for this process, of `bytes`. Needs the rights of root.
class SmallDisk {
 public:
  static bool isAllowed() {
    static const bool allowed =
        unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return allowed;
  }
  explicit SmallDisk(std::int64_t bytes) {
    const std::string size = "size=" + std::to_string(bytes);
    EXPECT_EQ(mount("none", folder_.path().c_str(), "tmpfs", 0, size.c_str()), 0);
  }
  ~SmallDisk() { umount2(folder_.path().c_str(), MNT_DETACH); }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  std::filesystem::path file() const { return folder_ / "full.mp4"; }

 private:
  support::TemporaryFolder folder_;
};

struct Outcome {
  int framesTaken = 0;      ///< By the writer.
  std::string failure;      ///< Reported while recording.
  std::string stopFailure;  ///< Reported by the stop.
};

/// Three seconds of pictures that are hard to compress, faster than real time.
Outcome record(const std::filesystem::path& path) {
  Outcome outcome;
  support::FakeClock clock;
  support::FakeTimerFactory timers;
  support::FakeMainQueue mainQueue;
  platform::ffmpeg::FfmpegVideoWriterFactory writers;
  recording::Recorder recorder(clock, timers, mainQueue, writers);
  recorder.setOnFailure([&](const std::string& message) { outcome.failure = message; });
  std::mt19937 noise(3);
  const auto started =
      recorder.start(path, 320, 240, 30, [&](const pixels::DrawingContext& context, pixels::Size) {
        ++outcome.framesTaken;
        for (int y = 0; y < context.pixels.height; ++y) {
          for (int x = 0; x < context.pixels.width; ++x) {
            context.pixels.row(y)[4 * x + 1] = static_cast<std::uint8_t>(noise() & 63);
          }
        }
      });
  if (!started) {
    outcome.failure = started.error().description;
    return outcome;
  }
  for (int tick = 0; tick < 90 && outcome.failure.empty(); ++tick) {
    clock.advance(1.0 / 30);
    const int before = outcome.framesTaken;
    while (outcome.framesTaken == before && outcome.failure.empty()) {
      timers.fire();
      std::this_thread::yield();
    }
  }
  recorder.stop([&](const auto& result) {
    if (!result) outcome.stopFailure = result.error().description;
  });
  while (recorder.isFinishing()) {
    mainQueue.drain();
    std::this_thread::yield();
  }
  return outcome;
}

TEST(Survival, OnADiskThatGetsFullWhatWasWrittenPlaysAndThePersonIsTold) {
  if (!SmallDisk::isAllowed()) GTEST_SKIP() << "Not allowed to mount a small disk.";
  const SmallDisk ample(64 << 20);
  ASSERT_EQ(record(ample.file()).stopFailure, "");
  const auto needed = static_cast<std::int64_t>(std::filesystem::file_size(ample.file()));
  const int levels = timesFromEnvironment("WAVESCRIBE_FILL_LEVELS", 3);
  int stopped = 0, notRewritten = 0, saved = 0;
  for (int level = 1; level <= levels; ++level) {
    const SmallDisk disk(needed * 5 * level / (2 * levels));  // Up to two and a half times that.
    const Outcome outcome = record(disk.file());

    const RecordedVideo video = readVideo(disk.file(), Pictures::leaveOut);
    const int lost = outcome.framesTaken - static_cast<int>(video.frames.size());
    EXPECT_EQ(video.error, "") << "level " << level;
    if (!outcome.failure.empty()) {
      ++stopped;
      EXPECT_THAT(outcome.failure, EndsWith("No space left on device"));
      EXPECT_THAT(outcome.stopFailure, EndsWith("No space left on device"));
      EXPECT_LE(lost, kMostLostSeconds * 30) << "level " << level;
    } else if (!outcome.stopFailure.empty()) {
      ++notRewritten;
      EXPECT_THAT(outcome.stopFailure, EndsWith("No space left on device"));
      const bool isComplete = outcome.stopFailure.find("is complete") != std::string::npos;
      EXPECT_LE(lost, isComplete ? 0 : kMostLostSeconds * 30) << "level " << level;
    } else {
      ++saved;
      EXPECT_EQ(lost, 0);
      EXPECT_EQ(std::ranges::count(video.boxes, "moof"), 0);
    }
  }
  std::printf("%d levels: %d stopped while recording, %d kept as fragments, %d saved\n", levels,
              stopped, notRewritten, saved);
}

}  // namespace
