#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "pixels/surface.h"
#include "platform/media_time.h"
#include "platform/result.h"

namespace platform {

/// What the frames of a video look like.
struct VideoSettings {
  int width = 0;                ///< Pixels.
  int height = 0;               ///< Pixels.
  double framesPerSecond = 30;  ///< About how many will come; their own times are what counts.
};

/// Writes one H.264 video into one MPEG-4 file. In this order: addInput, startWriting,
/// startSession, any number of frames, markAsFinished, finishWriting. At any moment of this the
/// file plays and holds what was recorded but for the newest fraction of a second, whatever becomes
/// of the program.
///
/// The end of a writer that has not finished closes its file with all frames it was given; the end
/// of one that is finishing waits until it has.
/// Main thread only, unless said otherwise.
class VideoWriter {
 public:
  enum class Status {
    unknown,    ///< Before startWriting.
    writing,    ///< Until finishing has ended, or something went wrong.
    completed,  ///< The file is finished.
    failed,     ///< `error` tells why. What had been written stays and plays.
  };

  virtual ~VideoWriter() = default;

  /// Any thread.
  virtual Status status() const = 0;
  /// Why the status is `failed`, where it is known. Any thread.
  virtual std::optional<Error> error() const = 0;

  /// False: no video of such settings can be written.
  virtual bool addInput(const VideoSettings& settings) = 0;
  /// False: `error` may tell why.
  virtual bool startWriting() = 0;
  /// The time at which the video begins to be shown.
  virtual void startSession(MediaTime start) = 0;

  /// Whether `append` would take a frame now.
  virtual bool isReadyForMoreMediaData() const = 0;
  /// Memory for one frame, of the settings' size and with any content; used ones come back.
  /// None when there is none to be had.
  virtual std::optional<pixels::Surface> takeBuffer() = 0;
  /// Takes a frame that is shown from `time` on, which is later than that of the frame before.
  /// Never waits for the encoder. False: not taken; if for an error, the status says so.
  virtual bool append(pixels::Surface frame, MediaTime time) = 0;

  /// No frame will follow.
  virtual void markAsFinished() = 0;
  /// Finishes the file, then calls `completion` once, on a thread of the writer's choosing, when
  /// `status` is `completed` or `failed`.
  virtual void finishWriting(std::function<void()> completion) = 0;
};

/// Opens files for videos. Main thread only.
class VideoWriterFactory {
 public:
  virtual ~VideoWriterFactory() = default;
  /// An existing file at `path` is replaced.
  virtual Result<std::unique_ptr<VideoWriter>> make(const std::filesystem::path& path) = 0;
};

}  // namespace platform
