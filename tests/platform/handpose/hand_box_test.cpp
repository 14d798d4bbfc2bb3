#include "platform/handpose/hand_box.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::openHand;

class HandBoxTurnedBy : public testing::TestWithParam<int> {};

TEST_P(HandBoxTurnedBy, IsFoundAgainFromTheJointsInIt) {
  const HandBox box{{320, 150}, 120, GetParam() * std::numbers::pi / 180};
  const HandBox found = boxOf(openHand(box));
  EXPECT_NEAR(found.centre.x, box.centre.x, 1e-9);
  EXPECT_NEAR(found.centre.y, box.centre.y, 1e-9);
  EXPECT_NEAR(found.size, box.size, 1e-9);
  EXPECT_NEAR(std::remainder(found.angle - box.angle, 2 * std::numbers::pi), 0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(EveryWay, HandBoxTurnedBy,
                         testing::Values(0, 17, 90, 178, -178, -115, -40), [](const auto& angle) {
                           const int degrees = angle.param;
                           return std::to_string(std::abs(degrees)) +
                                  (degrees < 0 ? "DegreesLeft" : "DegreesRight");
                         });

TEST(HandBox, AHandPointingRightIsTurnedAQuarterClockwise) {
  Landmarks hand = openHand({{0, 0}, 1, 0});
  at(hand, Joint::wrist).at = {10, 50};
  at(hand, Joint::middleMCP).at = {90, 50};
  EXPECT_NEAR(boxOf(hand).angle, std::numbers::pi / 2, 1e-12);
}

TEST(HandBox, IsNeverMuchSmallerThanThePalm) {
  Landmarks fist;
  fist.fill({{50, 50}, 1});
  at(fist, Joint::wrist).at = {50, 60};
  EXPECT_NEAR(boxOf(fist).size, 11, 1e-9);
}

TEST(HandBox, JointsAllInOnePlaceAreABoxWithoutSize) {
  Landmarks hand;
  hand.fill({{50, 50}, 1});
  const HandBox box = boxOf(hand);
  EXPECT_EQ(box.size, 0);
  EXPECT_TRUE(std::isfinite(box.angle));
}

TEST(HandBox, TwoHandsSideBySideAreTwoHands) {
  EXPECT_FALSE(coverSameHand({{100, 100}, 80, 0}, {{150, 100}, 80, 0}));
}

TEST(HandBox, NearlyTheSameBoxIsTheSameHandHoweverItIsTurned) {
  EXPECT_TRUE(coverSameHand({{100, 100}, 80, 0}, {{110, 105}, 70, 2}));
}

TEST(HandBox, ASmallHandBeforeALargeOneIsAnotherHand) {
  EXPECT_FALSE(coverSameHand({{100, 100}, 200, 0}, {{110, 105}, 60, 0}));
}

}  // namespace
}  // namespace platform::handpose
