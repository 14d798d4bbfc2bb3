#include "platform/ffmpeg/bgra_to_i420.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace {

using platform::ffmpeg::convertBgraToI420;

struct Frame {
  Frame(int width, int height)
      : stride((static_cast<std::size_t>(width) + 63) / 64 * 64),
        y(stride * height),
        u(stride * height / 2),
        v(stride * height / 2) {}
  platform::ffmpeg::I420View view() {
    return {{y.data(), stride}, {u.data(), stride}, {v.data(), stride}};
  }
  std::size_t stride;
  std::vector<std::uint8_t> y, u, v;
};

pixels::Surface plain(int width, int height, int blue, int green, int red) {
  pixels::Surface surface(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::uint8_t* pixel = surface.view().row(y) + 4 * x;
      pixel[0] = static_cast<std::uint8_t>(blue);
      pixel[1] = static_cast<std::uint8_t>(green);
      pixel[2] = static_cast<std::uint8_t>(red);
      pixel[3] = 255;
    }
  }
  return surface;
}

pixels::Surface noise(int width, int height) {
  pixels::Surface surface(width, height);
  std::mt19937 random(7);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < 4 * width; ++x)
      surface.view().row(y)[x] = static_cast<std::uint8_t>(random());
  }
  return surface;
}

/// Brightness and colour by the formula, from averages of blue, green and red.
std::array<double, 3> reference(double blue, double green, double red) {
  const double luma = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
  return {16 + 219 * luma / 255, 128 + 224 * (blue - luma) / 1.8556 / 255,
          128 + 224 * (red - luma) / 1.5748 / 255};
}

std::array<int, 3> converted(int blue, int green, int red) {
  Frame frame(2, 2);
  convertBgraToI420(plain(2, 2, blue, green, red), frame.view());
  return {frame.y[0], frame.u[0], frame.v[0]};
}

TEST(BgraToI420, PureColoursHaveTheValuesOfBt709) {
  EXPECT_EQ(converted(0, 0, 0), (std::array{16, 128, 128}));
  EXPECT_EQ(converted(255, 255, 255), (std::array{235, 128, 128}));
  EXPECT_EQ(converted(0, 0, 255), (std::array{63, 102, 240}));
  EXPECT_EQ(converted(0, 255, 0), (std::array{173, 42, 26}));
  EXPECT_EQ(converted(255, 0, 0), (std::array{32, 240, 118}));
}

TEST(BgraToI420, EveryGreyHasNoColour) {
  for (int grey = 0; grey < 256; ++grey) {
    const auto [y, u, v] = converted(grey, grey, grey);
    EXPECT_NEAR(y, 16 + 219 * grey / 255.0, 0.501);
    EXPECT_EQ(u, 128);
    EXPECT_EQ(v, 128);
  }
}

TEST(BgraToI420, EverySampleIsTheRoundedValueOfTheFormula) {
  for (const int width : {2, 14, 16, 18, 62, 66, 130}) {
    const int height = 6;
    const pixels::Surface picture = noise(width, height);
    Frame frame(width, height);

    convertBgraToI420(picture, frame.view());

    const auto at = [&](int x, int y, int channel) {
      return static_cast<double>(picture.row(y)[4 * std::max(x, 0) + channel]);
    };
    const auto around = [&](int x, int y, int channel) {
      double sum = 0;
      for (int j = 0; j < 2; ++j) {
        sum += at(2 * x - 1, 2 * y + j, channel) + 2 * at(2 * x, 2 * y + j, channel) +
               at(2 * x + 1, 2 * y + j, channel);
      }
      return sum / 8;
    };
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        EXPECT_NEAR(frame.y[y * frame.stride + x],
                    reference(at(x, y, 0), at(x, y, 1), at(x, y, 2))[0], 0.51);
      }
    }
    for (int y = 0; y < height / 2; ++y) {
      for (int x = 0; x < width / 2; ++x) {
        const auto expected = reference(around(x, y, 0), around(x, y, 1), around(x, y, 2));
        EXPECT_NEAR(frame.u[y * frame.stride + x], expected[1], 0.51);
        EXPECT_NEAR(frame.v[y * frame.stride + x], expected[2], 0.51);
      }
    }
  }
}

}  // namespace
