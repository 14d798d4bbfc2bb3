#pragma once

#include <filesystem>

#include "platform/result.h"

namespace platform::ffmpeg {

/// The words for a negative return value of the FFmpeg libraries.
Error avError(int code);

/// The words for a value of errno, with the file it is about.
Error fileError(const std::filesystem::path& path, int errorNumber);

}  // namespace platform::ffmpeg
