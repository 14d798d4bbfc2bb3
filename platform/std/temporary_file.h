#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>

namespace platform {

/// A hidden file that takes shape beside the one it is to become, so that both lie on the same
/// file system. Unless it takes that place it is gone with this object. One thread.
class TemporaryFile {
 public:
  /// The bits of a file's mode that setPermissions() is about.
  static constexpr mode_t kPermissionBits = 0777;

  TemporaryFile() = default;
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Each step is made once, in this order, and gives the system's reason when it fails.

  /// Makes an empty file with the permissions of any new file.
  std::error_code create(const std::filesystem::path& folder);
  /// Gives the file these permissions.
  std::error_code setPermissions(mode_t permissions);
  std::error_code write(std::span<const std::uint8_t> bytes);
  /// Puts the file, safely on the disk, in the place of `target` in a single step. After a failure
  /// `target` is as it was.
  std::error_code takePlaceOf(const std::filesystem::path& target);

 private:
  std::filesystem::path path_;  // Empty when there is no file to take away.
  int descriptor_ = -1;
};

}  // namespace platform
