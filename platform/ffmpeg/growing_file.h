#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

#include "platform/result.h"

namespace platform::ffmpeg {

/// A file that only grows, piece by piece; a write that fails leaves it as it was before. What it
/// holds is brought to the disk every kSyncSeconds by a thread of its own, because waiting for a
/// disk may take long; so not even a power cut takes much more than that. Its functions are called
/// by one thread at a time.
class GrowingFile {
 public:
  /// How much a power cut may take: often enough for a recording, rare enough for a laptop's disk.
  static constexpr double kSyncSeconds = 2;

  /// Replaces what was at `path`.
  static Result<std::unique_ptr<GrowingFile>> create(const std::filesystem::path& path);
  ~GrowingFile();

  /// All of it or nothing: after a failure the file ends where it ended before.
  Result<void> append(std::span<const std::uint8_t> piece);
  /// Returns when everything is on the disk. Nothing is appended afterwards.
  Result<void> finish();

  /// Where the file is: somebody may have moved it. An error when it was removed, or another file
  /// was put in its place.
  Result<std::filesystem::path> whereabouts() const;
  /// Opens this very file again while this object lives, wherever it is and whatever has its name.
  std::filesystem::path handle() const;

  std::int64_t size() const { return size_; }

 private:
  GrowingFile(std::filesystem::path path, int descriptor);
  void keepSyncing(const std::stop_token& stop);

  const std::filesystem::path path_;  // Where it was made.
  const int descriptor_;
  std::int64_t size_ = 0;

  std::mutex mutex_;
  std::condition_variable_any wake_;
  bool dirty_ = false;  // Guarded by mutex_, as is the next.
  int syncError_ = 0;
  std::jthread syncer_;
};

}  // namespace platform::ffmpeg
