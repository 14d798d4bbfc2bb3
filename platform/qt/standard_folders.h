#pragma once

#include "platform/standard_folders.h"

namespace platform::qt {

/// The folders of the XDG user directories.
class StandardFolders final : public platform::StandardFolders {
 public:
  std::optional<std::filesystem::path> movies() const override;
};

}  // namespace platform::qt
