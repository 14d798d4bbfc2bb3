#pragma once

#include <cstddef>
#include <cstdint>

#include "pixels/surface.h"

namespace platform::ffmpeg {

/// Rows of a plane start on multiples of this, and may be written to up to the next one.
inline constexpr std::size_t kI420Alignment = 64;

/// One plane of a video frame, top row first. `strideBytes` is a multiple of kI420Alignment.
struct Plane {
  std::uint8_t* data = nullptr;
  std::size_t strideBytes = 0;

  std::uint8_t* row(int y) const { return data + static_cast<std::size_t>(y) * strideBytes; }
};

/// Brightness in full and colour in half resolution.
struct I420View {
  Plane y;
  Plane u;
  Plane v;
};

/// Converts a picture of even width and height by ITU-R BT.709 in limited range (white is 235),
/// every value correctly rounded but for ties. Colour samples sit where H.264 expects them: level
/// with the left of two pixels, between two rows. Alpha is ignored. Any thread.
void convertBgraToI420(const pixels::Surface& picture, const I420View& out);

}  // namespace platform::ffmpeg
