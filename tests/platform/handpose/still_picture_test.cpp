#include "platform/handpose/still_picture.h"

#include <gtest/gtest.h>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::ScriptedHandVision;

pixels::Image picture() {
  const std::vector<std::uint8_t> data(4 * 640 * 480);
  return pixels::Image::copyOf(data.data(), 640, 480, 4 * 640);
}

TEST(StillPicture, AnEmptyRoomHasNoHands) {
  ScriptedHandVision vision;
  vision.phantoms = {{{300, 100}, 90, 0}};
  const auto hands = handsInStillPicture(vision, picture(), 2);
  ASSERT_TRUE(hands);
  EXPECT_TRUE(hands.value().empty());
}

TEST(StillPicture, ReportsTheBestHandsFirstAndNoMoreThanAskedFor) {
  ScriptedHandVision vision;
  vision.hands = {{.box = {{100, 100}, 60, 0}, .presence = 0.8},
                  {.box = {{300, 100}, 60, 0}, .presence = 0.99},
                  {.box = {{500, 300}, 60, 0}, .presence = 0.9}};
  const auto hands = handsInStillPicture(vision, picture(), 2);
  ASSERT_TRUE(hands);
  ASSERT_EQ(hands.value().size(), 2u);
  EXPECT_NEAR(boxOf(hands.value()[0].landmarks).centre.x, 300, 1e-6);
  EXPECT_NEAR(boxOf(hands.value()[1].landmarks).centre.x, 500, 1e-6);
}

TEST(StillPicture, LooksAgainInTheCropThatTheFirstLookGave) {
  ScriptedHandVision vision;
  vision.hands = {{.box = {{300, 200}, 100, 0.4}, .isFound = false}};
  vision.phantoms = {{{320, 210}, 80, 0}};  // Where the rough search puts the hand.
  ASSERT_TRUE(handsInStillPicture(vision, picture(), 2));
  ASSERT_GE(vision.reads.size(), 2u);
  EXPECT_NEAR(vision.reads[1].centre.x, 300, 1e-6);
  EXPECT_NEAR(vision.reads[1].angle, 0.4, 1e-6);
}

TEST(StillPicture, SeveralLooksAtOneHandGiveTheirMean) {
  ScriptedHandVision vision;
  vision.hands = {{.box = {{300, 200}, 100, 0}, .right = 0.9}};
  const auto hands = handsInStillPicture(vision, picture(), 2);
  ASSERT_TRUE(hands);
  ASSERT_EQ(hands.value().size(), 1u);
  const Landmarks expected = test_support::openHand({{300, 200}, 100, 0});
  for (std::size_t i = 0; i < kJointCount; ++i) {
    EXPECT_NEAR(distance(hands.value()[0].landmarks[i].at, expected[i].at), 0, 1e-9);
    EXPECT_NEAR(hands.value()[0].landmarks[i].confidence, 0.9, 1e-9);
  }
  EXPECT_EQ(hands.value()[0].chirality, Chirality::right);
}

TEST(StillPicture, TwoCandidatesOnOneHandAreReportedOnce) {
  ScriptedHandVision vision;
  vision.hands = {{.box = {{300, 200}, 100, 0}}};
  vision.phantoms = {{{330, 210}, 80, 0}};
  const auto hands = handsInStillPicture(vision, picture(), 2);
  ASSERT_TRUE(hands);
  EXPECT_EQ(hands.value().size(), 1u);
}

TEST(StillPicture, AFailureOfTheNetworksIsHandedOn) {
  ScriptedHandVision vision;
  vision.failure = Error{"No network."};
  const auto hands = handsInStillPicture(vision, picture(), 2);
  ASSERT_FALSE(hands);
  EXPECT_EQ(hands.error().description, "No network.");
}

}  // namespace
}  // namespace platform::handpose
