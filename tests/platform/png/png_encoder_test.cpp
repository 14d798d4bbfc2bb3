#include "platform/png/png_encoder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/png/read_png.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using testing::Contains;
using testing::ElementsAre;

using Pixel = std::array<std::uint8_t, 4>;

void setPixel(pixels::Surface& surface, int x, int y, const Pixel& bgra) {
  std::memcpy(surface.view().row(y) + 4 * x, bgra.data(), 4);
}

Pixel pixelOf(const pixels::Image& image, int x, int y) {
  Pixel pixel{};
  std::memcpy(pixel.data(), image.row(y) + 4 * x, 4);
  return pixel;
}

std::vector<std::uint8_t> encode(const pixels::Surface& surface) {
  return PngEncoder().encodePng(surface).value();
}

pixels::Image decode(const std::vector<std::uint8_t>& png) {
  const support::TemporaryFolder folder;
  std::ofstream(folder / "a.png", std::ios::binary)
      .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
  return readPng(folder / "a.png").value();
}

std::uint32_t bigEndian(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

struct Chunk {
  std::string type;
  std::vector<std::uint8_t> data;
};

std::vector<Chunk> chunksOf(const std::vector<std::uint8_t>& png) {
  std::vector<Chunk> chunks;
  for (std::size_t at = 8; at + 12 <= png.size();) {
    const std::size_t length = bigEndian(&png[at]);
    chunks.push_back({{png.begin() + at + 4, png.begin() + at + 8},
                      {png.begin() + at + 8, png.begin() + at + 8 + length}});
    at += 12 + length;
  }
  return chunks;
}

TEST(PngEncoder, OpaquePixelsComeBackAsTheyWere) {
  pixels::Surface surface(3, 2);
  setPixel(surface, 0, 0, {10, 20, 30, 255});
  setPixel(surface, 2, 1, {255, 254, 1, 255});

  const pixels::Image image = decode(encode(surface));

  ASSERT_EQ(image.width(), 3);
  ASSERT_EQ(image.height(), 2);
  EXPECT_THAT(pixelOf(image, 0, 0), ElementsAre(10, 20, 30, 255));
  EXPECT_THAT(pixelOf(image, 2, 1), ElementsAre(255, 254, 1, 255));
}

TEST(PngEncoder, TransparentPixelsStayTransparent) {
  const pixels::Image image = decode(encode(pixels::Surface(2, 2)));

  EXPECT_THAT(pixelOf(image, 1, 1), ElementsAre(0, 0, 0, 0));
}

TEST(PngEncoder, AlphaIsStraightWithEveryComponentRoundedToTheNearest) {
  pixels::Surface surface(256, 256);
  for (int alpha = 0; alpha < 256; ++alpha) {
    for (int c = 0; c <= alpha; ++c) {
      const auto component = static_cast<std::uint8_t>(c);
      setPixel(surface, c, alpha,
               {component, component, component, static_cast<std::uint8_t>(alpha)});
    }
  }

  const pixels::Image image = decode(encode(surface));

  for (int alpha = 1; alpha < 256; ++alpha) {
    for (int c = 0; c <= alpha; ++c) {
      const Pixel pixel = pixelOf(image, c, alpha);
      ASSERT_EQ(pixel[3], alpha);
      ASSERT_EQ(pixel[0], std::lround(255.0 * c / alpha)) << c << " of " << alpha;
    }
  }
}

TEST(PngEncoder, AComponentAboveItsAlphaBecomesFull) {
  pixels::Surface surface(1, 1);
  setPixel(surface, 0, 0, {200, 100, 50, 100});

  EXPECT_THAT(pixelOf(decode(encode(surface)), 0, 0), ElementsAre(255, 255, 128, 100));
}

TEST(PngEncoder, IsAnEightBitPictureWithAlphaMarkedAsSrgb) {
  const std::vector<Chunk> chunks = chunksOf(encode(pixels::Surface(5, 4)));

  ASSERT_FALSE(chunks.empty());
  EXPECT_EQ(chunks.front().type, "IHDR");
  EXPECT_THAT(chunks.front().data, ElementsAre(0, 0, 0, 5, 0, 0, 0, 4, 8, 6, 0, 0, 0));
  EXPECT_THAT(chunks, Contains(testing::AllOf(testing::Field(&Chunk::type, "sRGB"),
                                              testing::Field(&Chunk::data, ElementsAre(0)))));
  EXPECT_EQ(chunks.back().type, "IEND");
}

TEST(PngEncoder, ThePaddingOfTheRowsIsLeftOut) {
  pixels::Surface surface(17, 3);
  for (int y = 0; y < 3; ++y) {
    std::fill_n(surface.view().row(y), surface.strideBytes(), std::uint8_t{77});
    for (int x = 0; x < 17; ++x) setPixel(surface, x, y, {0, 0, 9, 255});
  }

  const pixels::Image image = decode(encode(surface));

  EXPECT_EQ(image.width(), 17);
  for (int y = 0; y < 3; ++y) EXPECT_THAT(pixelOf(image, 16, y), ElementsAre(0, 0, 9, 255));
}

TEST(PngEncoder, APictureWithoutPixelsIsAnError) {
  EXPECT_FALSE(PngEncoder().encodePng(pixels::Surface()).ok());
  EXPECT_FALSE(PngEncoder().encodePng(pixels::Surface(0, 5)).ok());
}

}  // namespace
}  // namespace platform
