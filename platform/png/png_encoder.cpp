#include "platform/png/png_encoder.h"

#include <png.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

namespace platform {

namespace {

/// Rounds to the nearest. A component above its alpha, which no drawing leaves, becomes 255.
std::uint8_t straight(unsigned premultiplied, unsigned alpha) {
  return static_cast<std::uint8_t>(std::min((premultiplied * 255 + alpha / 2) / alpha, 255u));
}

void writeStraightRow(const std::uint8_t* from, int width, std::uint8_t* to) {
  for (int x = 0; x < width; ++x, from += 4, to += 4) {
    const unsigned alpha = from[3];
    if (alpha == 255) {
      std::memcpy(to, from, 4);
    } else if (alpha == 0) {
      std::memset(to, 0, 4);
    } else {
      for (int i = 0; i < 3; ++i) to[i] = straight(from[i], alpha);
      to[3] = from[3];
    }
  }
}

std::vector<std::uint8_t> straightPixels(const pixels::Surface& picture) {
  const std::size_t rowBytes = 4 * static_cast<std::size_t>(picture.width());
  std::vector<std::uint8_t> result(rowBytes * static_cast<std::size_t>(picture.height()));
  for (int y = 0; y < picture.height(); ++y) {
    writeStraightRow(picture.row(y), picture.width(),
                     result.data() + rowBytes * static_cast<std::size_t>(y));
  }
  return result;
}

}  // namespace

Result<std::vector<std::uint8_t>> PngEncoder::encodePng(const pixels::Surface& picture) {
  if (picture.isEmpty()) return Error{"A picture without pixels cannot be a PNG."};
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width());
  image.height = static_cast<png_uint_32>(picture.height());
  image.format = PNG_FORMAT_BGRA;  // libpng marks 8-bit pixels as sRGB unless told otherwise.

  const std::vector<std::uint8_t> pixels = straightPixels(picture);
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<std::uint8_t> png(size);
  if (!png_image_write_to_memory(&image, png.data(), &size, 0, pixels.data(), 0, nullptr)) {
    return Error{"Encoding the PNG failed: " + std::string(image.message) + "."};
  }
  png.resize(size);
  png.shrink_to_fit();
  return png;
}

}  // namespace platform
