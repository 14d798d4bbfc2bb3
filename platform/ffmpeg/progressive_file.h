#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/result.h"

namespace platform::ffmpeg {

/// Rewrites the fragmented file at `path`, which holds `frameCount` frames, as a progressive one
/// with its index in front, which every player seeks in at once. Frames and times stay as they are;
/// the last frame is shown for `lastDuration` units of MediaTime.
/// The new file is made beside it and takes its place when it is complete and on the disk; after a
/// failure the old one is as it was. Any thread.
Result<void> makeProgressive(const std::filesystem::path& path, std::int64_t frameCount,
                             std::int64_t lastDuration);

}  // namespace platform::ffmpeg
