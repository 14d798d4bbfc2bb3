#include "platform/png/read_png.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "platform/png/png_encoder.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using testing::HasSubstr;

class ReadPng : public testing::Test {
 protected:
  Result<pixels::Image> read(const std::vector<std::uint8_t>& bytes) {
    std::ofstream(folder / "a.png", std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return readPng(folder / "a.png");
  }

  /// A picture whose rows all differ.
  static std::vector<std::uint8_t> goodFile() {
    pixels::Surface surface(40, 30);
    for (int y = 0; y < 30; ++y) {
      for (int x = 0; x < 40; ++x) {
        std::uint8_t* pixel = surface.view().row(y) + 4 * x;
        pixel[0] = static_cast<std::uint8_t>(x * y);
        pixel[1] = static_cast<std::uint8_t>(x * 7 + y);
        pixel[2] = static_cast<std::uint8_t>(x + y * 5);
        pixel[3] = 255;
      }
    }
    return PngEncoder().encodePng(surface).value();
  }

  support::TemporaryFolder folder;
};

TEST_F(ReadPng, AFileThatIsMissingIsAnErrorNamingIt) {
  const auto image = readPng(folder / "missing.png");

  ASSERT_FALSE(image.ok());
  EXPECT_THAT(image.error().description, HasSubstr((folder / "missing.png").string()));
}

TEST_F(ReadPng, AFolderIsAnError) {
  EXPECT_FALSE(readPng(folder.path()).ok());
}

TEST_F(ReadPng, WhatIsNoPngIsAnError) {
  EXPECT_FALSE(read({}).ok());
  EXPECT_FALSE(read({'G', 'I', 'F', '8', '9', 'a', 0, 0, 0, 0}).ok());
}

TEST_F(ReadPng, AFileCutOffAnywhereBeforeItsLastPixelIsAnError) {
  const std::vector<std::uint8_t> good = goodFile();
  const std::size_t ending = 12 + 4;  // The closing chunk, and the checksum before it.

  for (std::size_t size = 0; size < good.size() - ending - 8; size += 7) {
    EXPECT_FALSE(read({good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)}).ok())
        << "cut at " << size << " of " << good.size();
  }
}

TEST_F(ReadPng, AHeaderThatAsksForEndlessMemoryIsAnError) {
  std::vector<std::uint8_t> file = goodFile();
  // IHDR with 900,000 x 900,000 pixels, and its own checksum.
  const std::vector<std::uint8_t> huge{0x00, 0x0d, 0xbb, 0xa0, 0x00, 0x0d, 0xbb,
                                       0xa0, 8,    6,    0,    0,    0};
  std::copy(huge.begin(), huge.end(), file.begin() + 16);
  std::uint32_t crc = 0xffffffff;
  for (std::size_t i = 12; i < 29; ++i) {
    crc ^= file[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320 : 0);
  }
  crc = ~crc;
  for (int i = 0; i < 4; ++i) file[29 + i] = static_cast<std::uint8_t>(crc >> (24 - 8 * i));

  const auto image = read(file);

  ASSERT_FALSE(image.ok());
  EXPECT_THAT(image.error().description, HasSubstr("too many pixels"));
}

TEST_F(ReadPng, DamagedBytesNeverCrashIt) {
  const std::vector<std::uint8_t> good = goodFile();
  std::mt19937 random(3);
  int failures = 0;
  for (int i = 0; i < 500; ++i) {
    std::vector<std::uint8_t> bad = good;
    for (int k = 0; k < 3; ++k) bad[random() % bad.size()] = static_cast<std::uint8_t>(random());
    if (!read(bad).ok()) ++failures;
  }

  EXPECT_GT(failures, 400);
}

}  // namespace
}  // namespace platform
