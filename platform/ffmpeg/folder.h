#pragma once

#include <filesystem>

namespace platform::ffmpeg {

/// The folder that a path's file is in.
std::filesystem::path folderOf(const std::filesystem::path& path);

/// Brings the names in a folder to the disk. Where that cannot be done (network disks), nothing
/// happens: the files themselves are not affected.
void syncFolder(const std::filesystem::path& folder);

}  // namespace platform::ffmpeg
