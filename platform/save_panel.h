#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace platform {

enum class FileKind { png, mpeg4 };

struct SavePanelRequest {
  FileKind kind = FileKind::png;
  std::string proposedName;  ///< With its extension.
  std::optional<std::filesystem::path>
      proposedFolder;  ///< None, or none that is there: a usual one.
};

/// Asks the person where to save a file. Main thread only.
class SavePanel {
 public:
  virtual ~SavePanel() = default;
  /// Modal: returns once the person has answered. The path ends in the kind's extension; when a
  /// file of that name exists, the person has agreed to replace it. None: cancelled.
  virtual std::optional<std::filesystem::path> choose(const SavePanelRequest& request) = 0;
};

}  // namespace platform
