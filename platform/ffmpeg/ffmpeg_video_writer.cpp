#include "platform/ffmpeg/ffmpeg_video_writer.h"

extern "C" {
#include <libavutil/log.h>
}

#include <pthread.h>

#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

#include "platform/ffmpeg/progressive_file.h"

namespace platform::ffmpeg {

FfmpegVideoWriter::FfmpegVideoWriter(std::unique_ptr<FragmentedFile> file)
    : file_(std::move(file)) {}

FfmpegVideoWriter::~FfmpegVideoWriter() {
  if (thread_.joinable()) {
    queue_->close();
    thread_.join();
  }
  if (file_->frameCount() > 0) return;
  if (const auto place = file_->bytes().whereabouts()) {
    std::error_code ignored;
    std::filesystem::remove(place.value(), ignored);
  }
}

std::optional<Error> FfmpegVideoWriter::error() const {
  const std::lock_guard lock(errorMutex_);
  return error_;
}

bool FfmpegVideoWriter::addInput(const VideoSettings& settings) {
  auto encoder = H264Encoder::open(settings);
  if (!encoder) return false;
  encoder_ = std::move(encoder).value();
  queue_ = std::make_unique<FrameQueue>(settings.width, settings.height);
  framesPerSecond_ = settings.framesPerSecond;
  return true;
}

bool FfmpegVideoWriter::startWriting() {
  if (const auto begun = file_->begin(encoder_->codec()); !begun) {
    fail(begun.error());
    return false;
  }
  status_ = Status::writing;
  thread_ = std::thread([this] { encodeAll(); });
  pthread_setname_np(thread_.native_handle(), "video encoder");
  return true;
}

void FfmpegVideoWriter::startSession(MediaTime start) {
  sessionStart_ = start;
}

bool FfmpegVideoWriter::isReadyForMoreMediaData() const {
  return status_ == Status::writing && queue_->hasRoom();
}

std::optional<pixels::Surface> FfmpegVideoWriter::takeBuffer() {
  return queue_->takeBuffer();
}

bool FfmpegVideoWriter::append(pixels::Surface frame, MediaTime time) {
  if (status_ != Status::writing) return false;
  return queue_->push({std::move(frame), {time.value - sessionStart_.value}});
}

void FfmpegVideoWriter::markAsFinished() {}

void FfmpegVideoWriter::finishWriting(std::function<void()> completion) {
  completion_ = std::move(completion);
  queue_->close();
}

void FfmpegVideoWriter::encodeAll() {
  while (auto frame = queue_->pop()) {
    const auto start = std::chrono::steady_clock::now();
    if (status_ == Status::writing) {
      if (const auto encoded = encode(*frame); !encoded) fail(encoded.error());
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    queue_->recycle(std::move(frame->picture), taken.count());
  }
  if (status_ == Status::writing) {
    if (const auto ended = end(); !ended) {
      fail(ended.error());
    } else {
      status_ = Status::completed;
    }
  }
  if (completion_) completion_();
}

Result<void> FfmpegVideoWriter::encode(const FrameQueue::Frame& frame) {
  return encoder_->encode(frame.picture, frame.time,
                          [this](AVPacket& packet) { return file_->write(packet); });
}

Result<void> FfmpegVideoWriter::end() {
  auto drained = encoder_->drain([this](AVPacket& packet) { return file_->write(packet); });
  if (!drained) return drained;
  const std::int64_t lastDuration = std::lround(MediaTime::kTimescale / framesPerSecond_);
  auto ended = file_->end(lastDuration);
  const bool isFinishing = completion_ != nullptr;
  if (!ended || !isFinishing) return ended;
  if (file_->frameCount() == 0) return Error{"No frame was recorded."};
  const auto rewritten = makeProgressive(*file_, lastDuration);
  if (rewritten) return {};
  if (const auto place = file_->bytes().whereabouts(); !place) return place.error();
  return Error{
      "The recording is complete and plays, but it could not be rewritten for all "
      "players: " +
      rewritten.error().description};
}

void FfmpegVideoWriter::fail(Error error) {
  file_->abandon();  // Here, so that whoever hears of it need not wait for the disk.
  const std::lock_guard lock(errorMutex_);
  error_ = std::move(error);
  status_ = Status::failed;
}

FfmpegVideoWriterFactory::FfmpegVideoWriterFactory() {
  av_log_set_level(AV_LOG_QUIET);
}

Result<std::unique_ptr<VideoWriter>> FfmpegVideoWriterFactory::make(
    const std::filesystem::path& path) {
  auto file = FragmentedFile::create(path);
  if (!file) return file.error();
  return std::unique_ptr<VideoWriter>(std::make_unique<FfmpegVideoWriter>(std::move(file).value()));
}

}  // namespace platform::ffmpeg
