#include "tools/replay/replay.h"

#include <chrono>
#include <fstream>
#include <utility>

#include "platform/recorded/recorded_hand_pose_request.h"
#include "platform/recorded/recording_hand_pose_request.h"
#include "render/canvas_renderer.h"
#include "tools/replay/detector.h"
#include "tools/replay/stopwatch.h"

namespace replay {
namespace {

using platform::Error;
using platform::Result;

/// How often the window's timer fires.
constexpr double kTickSeconds = 1.0 / 30;

constexpr std::chrono::seconds kLongestFinishing(120);

void drawCanvas(const model::AppModel& model, const pixels::PixelBuffer& frame) {
  const pixels::Size size{static_cast<double>(frame.width()), static_cast<double>(frame.height())};
  render::CanvasRenderer::makeImage(model.makeScene(model.background(), true), size);
}

Result<std::unique_ptr<platform::HandPoseRequest>> detectorFor(const Options& options) {
  if (options.hands) {
    auto log = platform::readHandLog(*options.hands);
    if (!log) return log.error();
    return std::unique_ptr<platform::HandPoseRequest>(
        std::make_unique<platform::RecordedHandPoseRequest>(std::move(log).value()));
  }
  if (auto networks = makeDetector()) return networks;
  return Error{"This build has no networks to find hands with; give it recorded ones: --hands."};
}

/// Writes to a file that a person may not have named.
class OptionalFile {
 public:
  explicit OptionalFile(const std::optional<std::filesystem::path>& path) : path_(path) {
    if (path_) file_.open(*path_);
  }

  std::ostream* stream() { return path_ ? &file_ : nullptr; }

  Result<void> check() const {
    if (!path_ || file_) return {};
    return Error{path_->string() + " cannot be written."};
  }

  Result<void> close() {
    if (path_) file_.close();
    return check();
  }

 private:
  std::optional<std::filesystem::path> path_;
  std::ofstream file_;
};

}  // namespace

Replay::Replay(platform::HandPoseRequest& detector)
    : watched_(detector), machine_(watched_), model_(machine_.services()) {
  model_.refreshPermission();
  machine_.loop.runUntilIdle();
  ticks_ = machine_.loop.repeat(kTickSeconds, [this] { model_.tick(); });
}

Result<Summary> Replay::play(FrameSource& frames, Pace& pace, std::ostream* trace) {
  for (TraceLine line;; ++line.frame) {
    const Stopwatch decoding;
    const Result<std::optional<pixels::PixelBuffer>> frame = frames.next();
    line.milliseconds.decode = decoding.milliseconds();
    if (!frame) return frame.error();
    if (!frame.value()) {
      if (model_.isRecording()) machine_.loop.advanceTo(line.time + 1.5 * kTickSeconds);
      Summary summary{line.frame, model_.strokeCount(), {}};
      if (const auto fine = takeProblem(); !fine) summary.problem = fine.error().description;
      return summary;
    }
    line.time = frame.value()->time;
    const bool inTime = pace.waitFor(line.time);
    const Stopwatch painting;
    machine_.loop.advanceTo(line.time);
    if (inTime) show(*frame.value());
    if (const auto path = std::exchange(video_, std::nullopt)) {
      if (const auto started = startVideo(*path); !started) return started.error();
    }
    line.milliseconds.model = painting.milliseconds();
    if (trace != nullptr) {
      const Stopwatch drawing;
      drawCanvas(model_, *frame.value());
      line.milliseconds.draw = drawing.milliseconds();
      describe(line);
      write(line, *trace);
    }
  }
}

Result<void> Replay::startVideo(const std::filesystem::path& path) {
  machine_.savePanel.setAnswer(path);
  model_.toggleRecording();
  return takeProblem();
}

Result<void> Replay::finishVideo() {
  if (!model_.isRecording()) return Error{"The video could not be recorded to its end."};
  model_.toggleRecording();
  const bool isFinished =
      machine_.loop.runUntil([this] { return !model_.isFinishingRecording(); }, kLongestFinishing);
  if (!isFinished) return Error{"The video is not finished in time."};
  return takeProblem();
}

Result<void> Replay::savePicture(const std::filesystem::path& path) {
  machine_.savePanel.setAnswer(path);
  model_.saveImage(true);
  return takeProblem();
}

Result<void> Replay::takeProblem() {
  if (!model_.errorMessage()) return {};
  const Error problem{*model_.errorMessage() + " " + model_.errorDetails().value_or("")};
  model_.dismissError();
  return problem;
}

void Replay::show(const pixels::PixelBuffer& frame) {
  machine_.camera.deliver(frame);
  machine_.loop.runUntilIdle();
}

void Replay::describe(TraceLine& line) {
  line.hands.reset();
  line.output = model_.handOutput();
  line.status = model_.handStatus();
  line.colorIndex = model_.colorIndex();
  line.strokeCount = model_.strokeCount();
  line.milliseconds.detect = 0;
  if (const auto answer = watched_.takeAnswer()) {
    line.hands = answer->hands;
    line.milliseconds.detect = answer->milliseconds;
    line.milliseconds.model -= answer->milliseconds;
  }
}

Result<Summary> run(const Options& options) {
  auto frames = openFrames(options.clip);
  if (!frames) return frames.error();
  auto detector = detectorFor(options);
  if (!detector) return detector.error();

  OptionalFile trace(options.trace);
  OptionalFile seen(options.recordHands);
  for (const OptionalFile* file : {&trace, &seen}) {
    if (const auto fine = file->check(); !fine) return fine.error();
  }
  std::optional<platform::RecordingHandPoseRequest> recording;
  if (seen.stream() != nullptr) recording.emplace(*detector.value(), *seen.stream());

  Replay replay(recording ? static_cast<platform::HandPoseRequest&>(*recording)
                          : *detector.value());
  if (options.video) replay.recordTo(*options.video);
  FullSpeed fullSpeed;
  RealTime realTime;
  Result<Summary> summary = replay.play(
      *frames.value(), options.realtime ? static_cast<Pace&>(realTime) : fullSpeed, trace.stream());
  if (!summary) return summary;
  if (options.video) {
    if (const auto saved = replay.finishVideo(); !saved) {
      return Error{summary.value().problem.value_or(saved.error().description)};
    }
  }
  if (options.picture) {
    if (const auto saved = replay.savePicture(*options.picture); !saved) return saved.error();
  }
  for (OptionalFile* file : {&trace, &seen}) {
    if (const auto closed = file->close(); !closed) return closed.error();
  }
  return summary;
}

}  // namespace replay
