#pragma once

#include <cstdint>

#include "platform/ffmpeg/fragmented_file.h"
#include "platform/result.h"

namespace platform::ffmpeg {

/// Rewrites a fragmented file that has ended as a progressive one with its index in front, which
/// every player seeks in at once. Frames and times stay as they are; the last frame is shown for
/// `lastDuration` units of MediaTime.
/// The new file is made beside it and takes its place, wherever that is by then, when it is
/// complete and on the disk; after a failure the old one is as it was. What somebody has put in its
/// place is never touched. Any thread.
Result<void> makeProgressive(const FragmentedFile& file, std::int64_t lastDuration);

}  // namespace platform::ffmpeg
