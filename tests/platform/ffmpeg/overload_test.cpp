// A recording on a machine whose encoder is too slow for it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/ffmpeg/frame_queue.h"
#include "recording/recorder.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"

namespace {

using platform::MediaTime;
using platform::ffmpeg::FrameQueue;
using testing::Each;
using testing::Le;

constexpr double kFrame = 1.0 / 30;
constexpr double kSeconds = 20;

/// A writer before the encoder's queue, from which the test takes frames when it likes.
class QueueWriter final : public platform::VideoWriter {
 public:
  explicit QueueWriter(FrameQueue& queue) : queue_(queue) {}
  Status status() const override { return Status::writing; }
  std::optional<platform::Error> error() const override { return std::nullopt; }
  bool addInput(const platform::VideoSettings&) override { return true; }
  bool startWriting() override { return true; }
  void startSession(MediaTime) override {}
  bool isReadyForMoreMediaData() const override { return queue_.hasRoom(); }
  std::optional<pixels::Surface> takeBuffer() override {
    auto buffer = queue_.takeBuffer();
    buffers.insert(buffer->row(0));
    return buffer;
  }
  bool append(pixels::Surface frame, MediaTime time) override {
    return queue_.push({std::move(frame), time});
  }
  void markAsFinished() override {}
  void finishWriting(std::function<void()>) override {}

  std::set<const std::uint8_t*> buffers;  ///< That have been in use.

 private:
  FrameQueue& queue_;
};

struct QueueWriterFactory final : platform::VideoWriterFactory {
  FrameQueue queue{4, 2};
  QueueWriter* writer = nullptr;
  platform::Result<std::unique_ptr<platform::VideoWriter>> make(
      const std::filesystem::path&) override {
    auto made = std::make_unique<QueueWriter>(queue);
    writer = made.get();
    return std::unique_ptr<platform::VideoWriter>(std::move(made));
  }
};

/// Seconds between the frames that an encoder gets which needs so long for each of them, and, at
/// the end, how long ago the newest one was drawn and how many buffers there were.
struct Overload {
  explicit Overload(double secondsPerFrame) {
    support::FakeClock clock;
    support::FakeTimerFactory timers;
    support::FakeMainQueue mainQueue;
    QueueWriterFactory writers;
    recording::Recorder recorder(clock, timers, mainQueue, writers);
    const double start = clock.now();
    if (!recorder.start("", 4, 2, 30, [](const auto&, const auto&) {})) return;
    double last = 0;
    double nextTaken = start + secondsPerFrame;
    while (clock.now() < start + kSeconds) {
      clock.advance(kFrame);
      timers.fire();
      for (; nextTaken <= clock.now(); nextTaken += secondsPerFrame) {
        auto frame = writers.queue.pop();  // There is one: the encoder is the slower side.
        gaps.push_back(frame->time.seconds() - last);
        last = frame->time.seconds();
        writers.queue.recycle(std::move(frame->picture), secondsPerFrame);
      }
    }
    behind = clock.now() - start - last;
    buffers = writers.writer->buffers.size();
  }

  std::vector<double> gaps;
  double behind = 0;
  std::size_t buffers = 0;
};

class RecordingOnASlowMachine : public testing::TestWithParam<double> {};

/// As much time as may lie between two frames when none but every n-th is left out; times are whole
/// units.
double evenGap(double secondsPerFrame) {
  return std::ceil(secondsPerFrame / kFrame) * kFrame + 2.0 / MediaTime::kTimescale;
}

TEST_P(RecordingOnASlowMachine, LeavesOutFramesEvenly) {
  const auto gaps = Overload(GetParam()).gaps;

  const std::vector<double> settled(gaps.begin() + 20, gaps.end());
  EXPECT_THAT(settled, Each(Le(evenGap(GetParam()))));
}

TEST_P(RecordingOnASlowMachine, HasNoLongGapBeforeItsPaceIsKnown) {
  EXPECT_THAT(Overload(GetParam()).gaps, Each(Le(evenGap(2 * GetParam()))));
}

TEST_P(RecordingOnASlowMachine, RecordsAllThatTheEncoderCanTake) {
  EXPECT_NEAR(static_cast<double>(Overload(GetParam()).gaps.size()), kSeconds / GetParam(), 1);
}

TEST_P(RecordingOnASlowMachine, KeepsRealTime) {
  EXPECT_LE(Overload(GetParam()).behind, FrameQueue::kMostSeconds + GetParam());
}

TEST_P(RecordingOnASlowMachine, NeedsNoMoreMemoryThanItsQueue) {
  constexpr std::size_t kInHands = 2;  // Of the painter and of the encoder.
  EXPECT_LE(Overload(GetParam()).buffers, FrameQueue::kMostFrames + kInHands);
}

INSTANTIATE_TEST_SUITE_P(SecondsPerFrame, RecordingOnASlowMachine,
                         testing::Values(0.035, 0.05, 0.11, 0.31));

}  // namespace
