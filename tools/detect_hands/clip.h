#pragma once

#include <filesystem>
#include <functional>

#include "pixels/image.h"
#include "platform/result.h"

namespace tools {

/// One frame of a clip, and its time in seconds from the clip's beginning.
using ShowFrame = std::function<platform::Result<void>(const pixels::Image& frame, double time)>;

/// Calls `show` with each frame, in order, until it fails. Fails where the clip cannot be read, and
/// in a program that was built without GStreamer.
platform::Result<void> forEachFrame(const std::filesystem::path& clip, const ShowFrame& show);

}  // namespace tools
