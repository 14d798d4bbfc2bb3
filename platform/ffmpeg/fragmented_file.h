#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/ffmpeg/av_handles.h"
#include "platform/ffmpeg/growing_file.h"
#include "platform/result.h"

namespace platform::ffmpeg {

/// An MPEG-4 file in fragments: at any moment the file on the disk is a whole number of them and
/// plays. One thread.
class FragmentedFile {
 public:
  /// At most so much of a video waits in memory for its fragment to be complete.
  static constexpr double kFragmentSeconds = 0.25;

  static Result<std::unique_ptr<FragmentedFile>> create(const std::filesystem::path& path);

  /// Writes the head of the file, for frames of `codec` at 1/MediaTime::kTimescale s.
  Result<void> begin(const AVCodecContext& codec);
  /// Takes the packet's content. Packets come in the order of their times, no two at one time.
  Result<void> write(AVPacket& packet);
  /// Writes what waits and brings everything to the disk. The last frame is shown for
  /// `lastDuration` units of time.
  Result<void> end(std::int64_t lastDuration);
  /// Instead, after a failure: what is in the file is brought to the disk, what waits is dropped.
  void abandon() { static_cast<void>(file_->finish()); }

  /// What is in the file by now.
  std::int64_t frameCount() const { return frameCount_; }
  const GrowingFile& bytes() const { return *file_; }

 private:
  explicit FragmentedFile(std::unique_ptr<GrowingFile> file);
  Result<void> writePending(std::int64_t duration);
  Result<void> cut();
  Result<void> flush();

  // What libavformat has written since the last flush, and where it writes next.
  static int writeBytes(void* self, std::uint8_t* bytes, int count);
  static std::int64_t seekTo(void* self, std::int64_t offset, int whence);
  std::vector<std::uint8_t> waiting_;
  std::int64_t position_ = 0;

  std::unique_ptr<GrowingFile> file_;
  OwnIoPtr io_;
  OutputPtr output_;
  PacketPtr pending_;  // The newest frame: shown until the next one comes.
  bool hasPending_ = false;
  std::int64_t fragmentStart_ = 0;
  std::int64_t uncutFrames_ = 0;  // In libavformat, waiting for their fragment to be complete.
  std::int64_t frameCount_ = 0;
};

}  // namespace platform::ffmpeg
