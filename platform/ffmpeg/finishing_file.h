#pragma once

#include <filesystem>
#include <memory>

#include "platform/result.h"

namespace platform::ffmpeg {

/// A hidden file in which the finished video takes shape, beside the recording whose place it is to
/// take. Unless it takes a place it is gone with this object. What a crash leaves behind is
/// removed by the next one made in the same folder: such a file is locked for as long as somebody
/// works on it. One thread.
class FinishingFile {
 public:
  static Result<std::unique_ptr<FinishingFile>> createBeside(
      const std::filesystem::path& recording);
  ~FinishingFile();
  FinishingFile(const FinishingFile&) = delete;
  FinishingFile& operator=(const FinishingFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Brings the file to the disk and puts it in the place of `recording` in a single step. After a
  /// failure the recording is as it was.
  Result<void> takePlaceOf(const std::filesystem::path& recording);

 private:
  FinishingFile(std::filesystem::path path, int descriptor);

  const std::filesystem::path path_;
  const int descriptor_;  // Holds the lock.
  bool tookPlace_ = false;
};

}  // namespace platform::ffmpeg
