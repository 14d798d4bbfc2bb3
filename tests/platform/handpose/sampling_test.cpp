#include "platform/handpose/sampling.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace platform::handpose {
namespace {

/// Blue grows by one for each pixel to the right, green for each pixel down; the padding behind
/// each row is red.
pixels::Image ramp(int width, int height, int padding = 0) {
  const std::size_t stride = 4u * static_cast<std::size_t>(width + padding);
  std::vector<std::uint8_t> data(stride * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width + padding; ++x) {
      std::uint8_t* pixel = data.data() + y * stride + 4 * static_cast<std::size_t>(x);
      pixel[0] = x < width ? static_cast<std::uint8_t>(x) : 0;
      pixel[1] = x < width ? static_cast<std::uint8_t>(y) : 0;
      pixel[2] = x < width ? 0 : 255;
    }
  }
  return pixels::Image::copyOf(data.data(), width, height, stride);
}

const cv::Vec4b& pixelAt(const cv::Mat& picture, int x, int y) {
  return picture.at<cv::Vec4b>(y, x);
}

/// The crop's pixel (x, y) shows the picture where the geometry says it lies.
void expectShows(const cv::Mat& crop, const HandCrop& geometry, int x, int y, double tolerance) {
  const double count = crop.cols;
  const Point there = geometry.toPicture({(x + 0.5) / count, (y + 0.5) / count});
  EXPECT_NEAR(pixelAt(crop, x, y)[0], there.x - 0.5, tolerance) << x << " " << y;
  EXPECT_NEAR(pixelAt(crop, x, y)[1], there.y - 0.5, tolerance) << x << " " << y;
}

TEST(SampledCrop, AtFullSizeIsThePictureItself) {
  const cv::Mat crop = sample(ramp(200, 100), HandCrop{{100, 50}, 64, 0}, 64);
  EXPECT_EQ(pixelAt(crop, 0, 0), cv::Vec4b(68, 18, 0, 0));
  EXPECT_EQ(pixelAt(crop, 63, 63), cv::Vec4b(131, 81, 0, 0));
}

class SampledCropOf : public testing::TestWithParam<double> {};

TEST_P(SampledCropOf, ShowsEachPlaceWhereTheGeometryPutsIt) {
  const HandCrop geometry{{120, 128}, GetParam(), 0.4};
  const cv::Mat crop = sample(ramp(256, 256), geometry, 64);
  for (int x : {5, 31, 60}) {
    for (int y : {4, 33, 58}) expectShows(crop, geometry, x, y, 1.01);
  }
}

INSTANTIATE_TEST_SUITE_P(EverySize, SampledCropOf, testing::Values(20, 64, 100, 129, 170),
                         [](const auto& side) {
                           return std::to_string(static_cast<int>(side.param)) + "Pixels";
                         });

TEST(SampledCrop, RepeatsTheBorderBeyondThePicture) {
  const cv::Mat crop = sample(ramp(50, 40, 3), HandCrop{{50, 20}, 32, 0}, 32);
  EXPECT_EQ(pixelAt(crop, 15, 16), cv::Vec4b(49, 20, 0, 0));
  EXPECT_EQ(pixelAt(crop, 31, 16), cv::Vec4b(49, 20, 0, 0));
}

TEST(SampledCrop, FarOutsideThePictureShowsItsNearestPixels) {
  const cv::Mat crop = sample(ramp(50, 40), HandCrop{{5000, -9000}, 32, 1}, 16);
  EXPECT_EQ(pixelAt(crop, 8, 8), cv::Vec4b(49, 0, 0, 0));
}

TEST(SampledCrop, PaddingBehindTheRowsIsNeverSeen) {
  for (double side : {16.0, 60.0, 400.0}) {
    const cv::Mat crop = sample(ramp(37, 101, 5), HandCrop{{30, 50}, side, 0.2}, 32);
    for (const cv::Vec4b& pixel : cv::Mat_<cv::Vec4b>(crop)) ASSERT_EQ(pixel[2], 0) << side;
  }
}

TEST(SampledCrop, ShrinksByAveragingSoThatNothingFlickers) {
  std::vector<std::uint8_t> stripes(4 * 512 * 512);
  for (std::size_t i = 0; i < 512 * 512; ++i) stripes[4 * i] = i % 2 ? 200 : 100;
  const auto picture = pixels::Image::copyOf(stripes.data(), 512, 512, 4 * 512);
  const cv::Mat crop = sample(picture, HandCrop{{256, 256}, 400, 0}, 64);
  EXPECT_NEAR(pixelAt(crop, 32, 32)[0], 150, 1);
}

TEST(SampledRegion, LiesInTheMiddleOfGrey) {
  const cv::Mat seen = sample(ramp(100, 100), Region{0, 0, 100, 100}, 192, 144);
  ASSERT_EQ(seen.size(), cv::Size(192, 144));
  EXPECT_EQ(pixelAt(seen, 23, 70), cv::Vec4b(128, 128, 128, 128));
  EXPECT_EQ(pixelAt(seen, 24, 0), cv::Vec4b(0, 0, 0, 0));
  EXPECT_NEAR(pixelAt(seen, 167, 143)[0], 99, 1);
  EXPECT_EQ(pixelAt(seen, 168, 70), cv::Vec4b(128, 128, 128, 128));
}

TEST(SampledRegion, AveragesWhenItShrinks) {
  const cv::Mat seen = sample(ramp(240, 180), Region{0, 0, 240, 180}, 24, 18);
  EXPECT_NEAR(pixelAt(seen, 0, 0)[0], 4.5, 1.5);
  EXPECT_NEAR(pixelAt(seen, 12, 9)[0], 124.5, 1.5);
  EXPECT_NEAR(pixelAt(seen, 12, 9)[1], 94.5, 1.5);
}

TEST(SampledRegion, ShowsAPartOfThePictureEnlarged) {
  const cv::Mat seen = sample(ramp(200, 200), Region{100, 50, 24, 18}, 192, 144);
  EXPECT_NEAR(pixelAt(seen, 0, 0)[0], 100, 1);
  EXPECT_NEAR(pixelAt(seen, 191, 143)[0], 123, 1);
  EXPECT_NEAR(pixelAt(seen, 191, 143)[1], 67, 1);
}

TEST(SampledRegion, BeyondThePictureIsGrey) {
  const cv::Mat seen = sample(ramp(96, 72), Region{-96, -72, 192, 144}, 192, 144);
  EXPECT_EQ(pixelAt(seen, 95, 71), cv::Vec4b(128, 128, 128, 128));
  EXPECT_EQ(pixelAt(seen, 96, 72), cv::Vec4b(0, 0, 0, 0));
}

TEST(Sampling, TakesPicturesOfAnyShape) {
  for (const auto& [width, height] : {std::pair(1, 1), {37, 1001}, {1001, 1}, {2, 3}}) {
    const pixels::Image picture = ramp(width, height, 1);
    const cv::Mat seen = sample(picture, Region{0, 0, 1.0 * width, 1.0 * height}, 192, 144);
    EXPECT_EQ(seen.size(), cv::Size(192, 144));
    const cv::Mat crop = sample(picture, HandCrop{{width / 2.0, height / 2.0}, 900, 0.5}, 128);
    EXPECT_EQ(crop.size(), cv::Size(128, 128));
  }
}

}  // namespace
}  // namespace platform::handpose
