#include "platform/handpose/steadying.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::openHand;

/// The hand about `x`, all its joints seen as surely as told.
Landmarks handAt(double x, double confidence, double size = 80) {
  Landmarks hand = openHand({{x, 200}, size, 0});
  for (Landmark& landmark : hand) landmark.confidence = confidence;
  return hand;
}

Landmark& indexTipOf(Landmarks& hand) {
  return at(hand, Joint::indexTip);
}

TEST(Steadying, AJointThatIsSeenSurelyIsWhereItIsSeen) {
  Landmarks seen = handAt(100, 1);
  indexTipOf(seen).at.x += 30;
  const Landmarks steady = steadied(handAt(100, 1), seen);
  EXPECT_NEAR(at(steady, Joint::indexTip).at.x, indexTipOf(seen).at.x, 1e-9);
}

TEST(Steadying, AnUnsureJointGoesOnlyPartOfTheWay) {
  Landmarks before = handAt(100, 1);
  Landmarks seen = before;
  indexTipOf(seen) = {{indexTipOf(before).at.x + 30, indexTipOf(before).at.y}, 0.5};
  const double step = at(steadied(before, seen), Joint::indexTip).at.x - indexTipOf(before).at.x;
  EXPECT_GT(step, 5);
  EXPECT_LT(step, 20);
}

TEST(Steadying, AnUnsureJointArrivesInTheEnd) {
  Landmarks seen = handAt(100, 1);
  indexTipOf(seen).at.x += 30;
  indexTipOf(seen).confidence = 0.2;
  Landmarks steady = handAt(100, 1);
  for (int i = 0; i < 30; ++i) steady = steadied(steady, seen);
  EXPECT_NEAR(at(steady, Joint::indexTip).at.x, indexTipOf(seen).at.x, 0.1);
  EXPECT_NEAR(at(steady, Joint::indexTip).confidence, 0.2, 1e-9);
}

TEST(Steadying, AHandThatMovesAndGrowsTakesItsUnsureJointsAlong) {
  const Landmarks seen = handAt(130, 0.1, 100);
  const Landmarks steady = steadied(handAt(100, 0.1, 80), seen);
  for (std::size_t i = 0; i < kJointCount; ++i) {
    EXPECT_NEAR(steady[i].at.x, seen[i].at.x, 1e-6) << i;
    EXPECT_NEAR(steady[i].at.y, seen[i].at.y, 1e-6) << i;
  }
}

TEST(Steadying, WhatWasSureIsNotDoubtedAtOnce) {
  Landmarks steady = handAt(100, 0.9);
  const Landmarks seen = handAt(100, 0.1);
  steady = steadied(steady, seen);
  EXPECT_NEAR(steady[0].confidence, 0.828, 1e-9);
  for (int i = 0; i < 40; ++i) steady = steadied(steady, seen);
  EXPECT_NEAR(steady[0].confidence, 0.1, 1e-9);
}

TEST(Steadying, AFingertipThatIsOnlyNowAndThenSureIsBelievedInBetween) {
  constexpr double kBelieved = 0.3;  // What a joint's confidence must exceed to count.
  Landmarks steady = handAt(100, 0.4);
  for (int i = 0; i < 30; ++i) {
    steady = steadied(steady, handAt(100, i % 3 == 2 ? 0.4 : 0.2));
    EXPECT_GT(steady[0].confidence, kBelieved) << i;
  }
}

TEST(Steadying, AHandThatIsElsewhereIsBegunAnew) {
  const Landmarks seen = handAt(600, 0.2);
  EXPECT_EQ(steadied(handAt(100, 1), seen), seen);
}

}  // namespace
}  // namespace platform::handpose
