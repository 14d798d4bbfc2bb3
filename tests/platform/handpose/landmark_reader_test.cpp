#include "platform/handpose/landmark_reader.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/handpose/embedded_networks.h"

namespace platform::handpose {
namespace {

TEST(LandmarkReader, PutsTheJointsIntoThePictureWhereverTheCropIs) {
  auto loaded = LandmarkReader::load(handLandmarksFile());
  ASSERT_TRUE(loaded);
  LandmarkReader reader = std::move(loaded).value();
  const std::vector<std::uint8_t> grey(4 * 400 * 300, 90);
  const auto picture = pixels::Image::copyOf(grey.data(), 400, 300, 4 * 400);
  const HandCrop here{{100, 100}, 80, 0};
  const HandCrop there{{250, 180}, 160, 1.5};

  const auto first = reader.read(picture, here);
  const auto second = reader.read(picture, there);

  ASSERT_TRUE(first && second);  // Both crops look the same: plain grey.
  for (std::size_t i = 0; i < kJointCount; ++i) {
    const Point a = here.toCrop(first.value().landmarks[i].at);
    const Point b = there.toCrop(second.value().landmarks[i].at);
    EXPECT_NEAR(a.x, b.x, 1e-6);
    EXPECT_NEAR(a.y, b.y, 1e-6);
    EXPECT_GE(first.value().landmarks[i].confidence, 0);
    EXPECT_LE(first.value().landmarks[i].confidence, 1);
  }
}

}  // namespace
}  // namespace platform::handpose
