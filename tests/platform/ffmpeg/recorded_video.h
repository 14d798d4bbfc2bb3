#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "pixels/surface.h"

namespace support {

/// A picture as video files hold it: brightness in full and two colour differences in half
/// resolution, without padding.
struct Planes {
  std::vector<std::uint8_t> y, u, v;
};

/// A video file as a player sees it.
struct RecordedVideo {
  struct Frame {
    std::int64_t time = 0;  ///< Units of timeBase.
    bool isKey = false;
    char kind = '?';          ///< I, P or B.
    pixels::Surface picture;  ///< Converted by the file's own colour tags.
    Planes planes;            ///< The same before that.
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

/// A picture of even width and height as the video format wants it.
Planes planesOf(const pixels::Surface& picture);

/// What is left of a picture when its colour is halved in each direction, as the video format wants
/// it: the best that a recording can look. Of even width and height.
pixels::Surface withHalvedColor(const pixels::Surface& picture);

// Peak signal-to-noise ratios of two pictures of one size, in decibels.

/// Over red, green and blue.
double psnr(const pixels::Surface& a, const pixels::Surface& b);
/// Over the brightness that is seen.
double brightnessPsnr(const pixels::Surface& a, const pixels::Surface& b);
/// Over one plane.
double psnr(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b);

}  // namespace support
