#include "platform/handpose/gates.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::openHand;

const HandBox kBox{{200, 100}, 80, 0};
const HandCandidate kLikely{kBox, 0.8, 0.5};
const HandCandidate kUnlikely{kBox, 0.25, 0.5};

HandReading reading(double presence, double confidence = 0.9, const HandBox& box = kBox) {
  return {openHand(box, confidence), presence, 0.5};
}

pixels::Image picture() {
  const std::vector<std::uint8_t> data(4 * 320 * 240);
  return pixels::Image::copyOf(data.data(), 320, 240, 4 * 320);
}

TEST(Gates, AHandThatBothNetworksSeeIsNew) {
  EXPECT_TRUE(isNewHand(kLikely, reading(0.95), picture()));
}

TEST(Gates, WhatOnlyOneOfTheNetworksTakesForAHandIsNone) {
  EXPECT_FALSE(isNewHand(kUnlikely, reading(0.95), picture()));
  EXPECT_FALSE(isNewHand(kLikely, reading(0.2), picture()));
}

TEST(Gates, AnUnsureSightKeepsAHandButDoesNotStartOne) {
  EXPECT_TRUE(keepsOn(reading(0.6, 0.2), picture()));
  EXPECT_FALSE(isNewHand({kBox, 0.5, 0.5}, reading(0.6, 0.2), picture()));
}

TEST(Gates, AHandWhoseMiddleHasLeftThePictureIsGone) {
  EXPECT_TRUE(keepsOn(reading(0.9, 0.9, {{318, 100}, 80, 0}), picture()));
  EXPECT_FALSE(keepsOn(reading(0.9, 0.9, {{325, 100}, 80, 0}), picture()));
}

TEST(Gates, AHandOfAFewPixelsIsNone) {
  EXPECT_FALSE(keepsOn(reading(0.9, 0.9, {{100, 100}, 6, 0}), picture()));
}

TEST(Gates, AHandWithUnsureJointsScoresLess) {
  EXPECT_LT(scoreOf(reading(0.9, 0.2)), scoreOf(reading(0.9, 0.9)));
}

}  // namespace
}  // namespace platform::handpose
