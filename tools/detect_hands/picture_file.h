#pragma once

#include <filesystem>

#include "pixels/image.h"
#include "platform/result.h"

namespace tools {

/// Reads a JPEG, PNG or other common picture, turned as its camera was held.
platform::Result<pixels::Image> readPicture(const std::filesystem::path& path);

/// Writes a picture in the format of the path's extension.
platform::Result<void> writePicture(const pixels::Image& picture,
                                    const std::filesystem::path& path);

}  // namespace tools
