#pragma once

#include <filesystem>

#include "pixels/image.h"
#include "platform/result.h"

namespace platform {

/// Reads a PNG of any kind as 8-bit sRGB. The fourth byte of a pixel, which an Image otherwise
/// ignores, holds the file's straight alpha. Fails, with the path in the description, on what is
/// no PNG, on damaged files and on pictures of more than 100 million pixels. Any thread.
Result<pixels::Image> readPng(const std::filesystem::path& path);

}  // namespace platform
