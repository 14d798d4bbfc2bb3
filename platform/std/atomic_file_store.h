#pragma once

#include "platform/file_store.h"

namespace platform {

/// Writes beside the target and renames over it. A file that is replaced passes its permissions
/// on; where the path is a symbolic link, the file behind it is replaced and the link stays. Never
/// replaces what is no regular file, or what may not be written to, nor
/// removes other than regular files and links.
class AtomicFileStore final : public FileStore {
 public:
  Result<void> replace(const std::filesystem::path& path,
                       std::span<const std::uint8_t> bytes) override;
  Result<void> remove(const std::filesystem::path& path) override;
};

}  // namespace platform
