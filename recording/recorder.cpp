#include "recording/recorder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "recording/recorder_error.h"

namespace recording {

using platform::MediaTime;
using platform::VideoWriter;

namespace {

platform::Error failureOf(const VideoWriter& writer) {
  return writer.error().value_or(toError(RecorderError::cannotStart));
}

void fillBlack(const pixels::SurfaceView& pixels) {
  constexpr std::uint8_t kOpaqueBlack[4] = {0, 0, 0, 255};
  for (int y = 0; y < pixels.height; ++y) {
    std::uint8_t* row = pixels.row(y);
    for (int x = 0; x < pixels.width; ++x) std::memcpy(row + 4 * x, kOpaqueBlack, 4);
  }
}

}  // namespace

Recorder::Recorder(const platform::Clock& clock, platform::TimerFactory& timers,
                   platform::MainQueue& mainQueue, platform::VideoWriterFactory& writers)
    : clock_(clock),
      timers_(timers),
      mainQueue_(mainQueue),
      writers_(writers),
      self_(std::make_shared<Recorder*>(this)) {}

Recorder::~Recorder() = default;

void Recorder::setOnFailure(std::function<void(const std::string&)> onFailure) {
  onFailure_ = std::move(onFailure);
}

platform::Result<void> Recorder::start(const std::filesystem::path& path, int width, int height,
                                       double fps, RenderFrame render) {
  auto made = writers_.make(path);
  if (!made) return made.error();
  std::unique_ptr<VideoWriter> writer = std::move(made).value();
  if (!writer->addInput({width, height, fps})) return toError(RecorderError::cannotAddInput);
  if (!writer->startWriting()) return failureOf(*writer);
  writer->startSession(MediaTime{});

  writer_ = std::move(writer);
  renderFrame_ = std::move(render);
  width_ = width;
  height_ = height;
  path_ = path;
  hasFrames_ = false;
  lastTime_ = {};
  startUptime_ = clock_.now();
  timer_ = timers_.repeat(1 / fps, [this] { captureFrame(); });
  return {};
}

void Recorder::captureFrame() {
  if (!writer_) return;
  if (writer_->status() == VideoWriter::Status::failed) return reportFailure();
  if (writer_->status() != VideoWriter::Status::writing || !writer_->isReadyForMoreMediaData())
    return;
  const MediaTime time = MediaTime::fromSeconds(clock_.now() - startUptime_);
  if (hasFrames_ && time <= lastTime_) return;
  std::optional<pixels::Surface> frame = writer_->takeBuffer();
  if (!frame) return;

  fillBlack(frame->view());
  renderFrame_({frame->view()}, {static_cast<double>(width_), static_cast<double>(height_)});
  if (!writer_->append(std::move(*frame), time)) return;  // A failure shows at the next tick.
  lastTime_ = time;
  hasFrames_ = true;
}

void Recorder::reportFailure() {
  const auto error = writer_->error();
  timer_.reset();
  if (onFailure_) onFailure_(error ? error->description : "Unknown writer error.");
}

void Recorder::stop(StopCompletion completion) {
  timer_.reset();
  if (!writer_) return completion(toError(RecorderError::notRecording));
  std::unique_ptr<VideoWriter> writer = std::move(writer_);
  renderFrame_ = nullptr;
  if (writer->status() != VideoWriter::Status::writing) return completion(failureOf(*writer));

  VideoWriter& finishing = *finishing_.emplace_back(std::move(writer));
  finishing.markAsFinished();
  auto onMain = [self = std::weak_ptr(self_), &finishing, path = path_,
                 completion = std::move(completion)] {
    if (const auto recorder = self.lock()) (*recorder)->ended(finishing, path, completion);
  };
  finishing.finishWriting(
      [&queue = mainQueue_, onMain = std::move(onMain)] { queue.post(onMain); });
}

void Recorder::waitUntilFinished() {
  self_ = std::make_shared<Recorder*>(this);
  finishing_.clear();  // Their end waits.
}

void Recorder::ended(VideoWriter& writer, const std::filesystem::path& path,
                     const StopCompletion& completion) {
  const auto at = std::find_if(finishing_.begin(), finishing_.end(),
                               [&](const auto& other) { return other.get() == &writer; });
  const std::unique_ptr<VideoWriter> ownedUntilReturn = std::move(*at);
  finishing_.erase(at);
  if (writer.status() == VideoWriter::Status::completed) {
    completion(path);
  } else {
    completion(failureOf(writer));
  }
}

}  // namespace recording
