#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/ffmpeg/fragmented_file.h"
#include "platform/ffmpeg/frame_queue.h"
#include "platform/ffmpeg/h264_encoder.h"
#include "platform/video_writer.h"

namespace platform::ffmpeg {

/// Encodes on a thread of its own, which the caller never waits for but at the end. The file at the
/// path is fragmented while frames come, and made progressive when it is finished; when that last
/// step fails, the fragmented one stays. A writer that ends without being finished leaves the
/// fragmented file with all frames; one that took no frame leaves no file.
class FfmpegVideoWriter final : public VideoWriter {
 public:
  explicit FfmpegVideoWriter(std::unique_ptr<FragmentedFile> file);
  ~FfmpegVideoWriter() override;

  Status status() const override { return status_; }
  std::optional<Error> error() const override;
  bool addInput(const VideoSettings& settings) override;
  bool startWriting() override;
  void startSession(MediaTime start) override;
  bool isReadyForMoreMediaData() const override;
  std::optional<pixels::Surface> takeBuffer() override;
  bool append(pixels::Surface frame, MediaTime time) override;
  void markAsFinished() override;
  void finishWriting(std::function<void()> completion) override;

 private:
  // On the encoder's thread.
  void encodeAll();
  Result<void> encode(const FrameQueue::Frame& frame);
  Result<void> end();

  // Before that thread begins, or on it.
  void fail(Error error);

  std::unique_ptr<FragmentedFile> file_;
  std::unique_ptr<H264Encoder> encoder_;
  std::unique_ptr<FrameQueue> queue_;
  double framesPerSecond_ = 0;
  MediaTime sessionStart_;
  std::function<void()> completion_;  // Set before the queue is closed, if at all.

  std::atomic<Status> status_ = Status::unknown;
  mutable std::mutex errorMutex_;
  std::optional<Error> error_;
  std::thread thread_;
};

/// Opens such writers.
class FfmpegVideoWriterFactory final : public VideoWriterFactory {
 public:
  /// Silences the libraries: what goes wrong is in the errors.
  FfmpegVideoWriterFactory();
  Result<std::unique_ptr<VideoWriter>> make(const std::filesystem::path& path) override;
};

}  // namespace platform::ffmpeg
