#include "platform/handpose/landmark_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "platform/handpose/embedded_networks.h"
#include "platform/handpose/gates.h"
#include "tests/support/scripted_hand_vision.h"

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

/// What the network says of an open hand in the middle of a crop.
struct Outputs {
  std::array<float, 3 * kJointCount> joints{};
  std::array<float, 2> hand{0.9f, 0.8f};

  Outputs() {
    float* value = joints.data();
    for (const Landmark& landmark : test_support::openHand({{0.5, 0.5}, 0.6, 0})) {
      *value++ = static_cast<float>(landmark.at.x);
      *value++ = static_cast<float>(landmark.at.y);
      *value++ = static_cast<float>(landmark.confidence);
    }
  }

  bool showAHand() const {
    const std::vector<std::uint8_t> grey(4 * 400 * 300, 90);
    const auto picture = pixels::Image::copyOf(grey.data(), 400, 300, 4 * 400);
    const HandReading reading = readingIn(joints.data(), hand.data(), {{200, 150}, 120, 0});
    const HandCandidate sure{{{200, 150}, 80, 0}, 1, 0.5};
    return keepsOn(reading, picture) || isNewHand(sure, reading, picture);
  }
};

TEST(LandmarkReader, WhatIsNoNumberIsNoHand) {
  EXPECT_TRUE(Outputs().showAHand());
  constexpr float kInfinite = std::numeric_limits<float>::infinity();
  for (const float bad : {std::numeric_limits<float>::quiet_NaN(), kInfinite, -kInfinite}) {
    for (std::size_t i = 0; i < Outputs().joints.size(); ++i) {
      Outputs outputs;
      outputs.joints[i] = bad;
      EXPECT_FALSE(outputs.showAHand()) << bad << " at " << i;
    }
    for (std::size_t i = 0; i < Outputs().hand.size(); ++i) {
      Outputs outputs;
      outputs.hand[i] = bad;
      EXPECT_FALSE(outputs.showAHand()) << bad << " for the hand, " << i;
    }
  }
}

}  // namespace
}  // namespace platform::handpose
