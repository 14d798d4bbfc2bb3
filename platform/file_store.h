#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/result.h"

namespace platform {

/// Files the person chose. Any thread.
class FileStore {
 public:
  virtual ~FileStore() = default;
  /// Puts `bytes` at `path`, replacing what was there. All or nothing: after a failure, or a crash
  /// at any moment, an earlier file is as it was.
  virtual Result<void> replace(const std::filesystem::path& path,
                               std::span<const std::uint8_t> bytes) = 0;
  /// Takes the file at `path` away; where it is a symbolic link, the link.
  virtual Result<void> remove(const std::filesystem::path& path) = 0;
};

}  // namespace platform
