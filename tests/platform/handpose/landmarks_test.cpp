#include "platform/handpose/landmarks.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::openHand;

const HandBox kBox{{100, 200}, 80, 0.4};

TEST(Landmarks, TheReportedWristAndKnuckleMoveTowardsEachOther) {
  Landmarks plain = openHand(kBox);
  at(plain, Joint::wrist).at = {100, 300};
  at(plain, Joint::middleMCP).at = {100, 200};

  const Landmarks reported = inReportedConvention(plain);

  EXPECT_DOUBLE_EQ(at(reported, Joint::wrist).at.y, 288);
  EXPECT_DOUBLE_EQ(at(reported, Joint::middleMCP).at.y, 210);
  EXPECT_DOUBLE_EQ(at(reported, Joint::wrist).at.x, 100);
}

TEST(Landmarks, TheReportedConventionMovesNothingElse) {
  const Landmarks plain = openHand(kBox);
  Landmarks reported = inReportedConvention(plain);
  at(reported, Joint::wrist) = at(plain, Joint::wrist);
  at(reported, Joint::middleMCP) = at(plain, Joint::middleMCP);
  EXPECT_EQ(reported, plain);
}

TEST(Landmarks, AHandIsAsLargeAsItsPalm) {
  Landmarks hand = openHand(kBox);
  EXPECT_NEAR(handSize(hand), distance(at(hand, Joint::wrist).at, at(hand, Joint::middleMCP).at),
              1e-9);
}

TEST(Landmarks, APalmSeenFromItsEdgeDoesNotMakeTheHandTiny) {
  Landmarks hand = openHand(kBox);
  at(hand, Joint::middleMCP).at = at(hand, Joint::wrist).at;
  EXPECT_GT(handSize(hand), 0.25 * kBox.size);
}

TEST(Landmarks, OneCoordinateThatIsNoNumberSpoilsTheHand) {
  Landmarks hand = openHand(kBox);
  EXPECT_TRUE(isFinite(hand));
  hand[7].at.y = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(isFinite(hand));
}

}  // namespace
}  // namespace platform::handpose
