#pragma once

#include <filesystem>
#include <optional>

namespace platform {

/// Where the person keeps things. Main thread only.
class StandardFolders {
 public:
  virtual ~StandardFolders() = default;
  /// None when the system names no folder for videos.
  virtual std::optional<std::filesystem::path> movies() const = 0;
};

}  // namespace platform
