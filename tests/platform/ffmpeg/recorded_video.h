#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "pixels/surface.h"

namespace support {

/// A video file as a player sees it.
struct RecordedVideo {
  struct Frame {
    std::int64_t time = 0;  ///< Units of timeBase.
    bool isKey = false;
    char kind = '?';          ///< I, P or B.
    pixels::Surface picture;  ///< Converted by the file's own colour tags.
  };

  std::string codec;
  int width = 0;
  int height = 0;
  std::array<int, 2> timeBase{};
  double seconds = 0;  ///< How long a player says it lasts.
  std::string pixelFormat;
  std::string range, primaries, transfer, matrix, chromaLocation;
  std::vector<Frame> frames;
  std::vector<std::string> boxes;  ///< The file's outermost boxes, in their order.
  std::string error;               ///< Empty when the whole file could be read.

  std::vector<std::int64_t> times() const;
};

enum class Pictures { keep, leaveOut };

/// Decodes the whole file.
RecordedVideo readVideo(const std::filesystem::path& path, Pictures pictures = Pictures::keep);

/// What is left of a picture when its colour is halved in each direction, as the video format wants
/// it: the best that a recording can look. Of even width and height.
pixels::Surface withHalvedColor(const pixels::Surface& picture);

/// Peak signal-to-noise ratio over red, green and blue of two pictures of one size, in decibels.
double psnr(const pixels::Surface& a, const pixels::Surface& b);

}  // namespace support
