#include "platform/png/read_png.h"

#include <png.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace platform {

namespace {

constexpr std::uint64_t kMostPixels = 100'000'000;  // A damaged header can ask for any amount.

/// libpng's reading state, freed however the reading ends.
struct Reader {
  Reader() { image.version = PNG_IMAGE_VERSION; }
  ~Reader() { png_image_free(&image); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  png_image image{};
};

Error failure(const std::filesystem::path& path, const std::string& reason) {
  return {"Reading " + path.string() + " failed: " + reason + "."};
}

}  // namespace

Result<pixels::Image> readPng(const std::filesystem::path& path) {
  Reader reader;
  png_image& image = reader.image;
  if (!png_image_begin_read_from_file(&image, path.c_str())) return failure(path, image.message);
  if (std::uint64_t{image.width} * image.height > kMostPixels) {
    return failure(path, "it has too many pixels");
  }
  image.format = PNG_FORMAT_BGRA;
  const std::size_t rowBytes = 4 * static_cast<std::size_t>(image.width);
  const std::shared_ptr<std::uint8_t[]> pixels(new std::uint8_t[rowBytes * image.height]);
  if (!png_image_finish_read(&image, nullptr, pixels.get(), 0, nullptr)) {
    return failure(path, image.message);
  }
  return pixels::Image(std::shared_ptr<const std::uint8_t>(pixels, pixels.get()),
                       static_cast<int>(image.width), static_cast<int>(image.height), rowBytes);
}

}  // namespace platform
