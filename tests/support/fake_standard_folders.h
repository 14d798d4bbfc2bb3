#pragma once

#include "platform/standard_folders.h"

namespace support {

/// Folders that a test chooses.
class FakeStandardFolders final : public platform::StandardFolders {
 public:
  std::optional<std::filesystem::path> movies() const override { return moviesFolder; }

  std::optional<std::filesystem::path> moviesFolder = "/home/somebody/Videos";
};

}  // namespace support
