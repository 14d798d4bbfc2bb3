#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/platform/handpose/hand_tracks_fixture.h"

namespace platform::handpose {
namespace {

using test_support::ScriptedHand;
using testing::SizeIs;

TEST_F(HandTracksTest, TwoHandsAreBothFollowedWithTheBetterFirst) {
  vision.hands = {{.box = {{150, 200}, 90, 0}, .presence = 0.8},
                  {.box = {{450, 200}, 90, 0}, .presence = 0.95}};
  const auto hands = next();
  ASSERT_THAT(hands, SizeIs(2));
  EXPECT_NEAR(centreOf(hands[0]).x, 450, 1e-6);
  EXPECT_NE(hands[0].id, hands[1].id);
}

TEST_F(HandTracksTest, AThirdHandIsNotReported) {
  vision.hands = {
      {.box = {{100, 200}, 90, 0}}, {.box = {{300, 200}, 90, 0}}, {.box = {{500, 200}, 90, 0}}};
  EXPECT_THAT(next(20), SizeIs(2));
}

TEST_F(HandTracksTest, WithTwoFollowedHandsTheSearchIsRare) {
  vision.hands = {{.box = {{150, 200}, 90, 0}}, {.box = {{450, 200}, 90, 0}}};
  next(3);
  const int finds = vision.finds;
  next(60);
  EXPECT_GE(vision.finds - finds, 4);
  EXPECT_LE(vision.finds - finds, 5);
}

TEST_F(HandTracksTest, ASecondHandIsSearchedForNowAndThen) {
  vision.hands = {{.box = {{150, 200}, 90, 0}}};
  next();
  const int finds = vision.finds;
  next(60);
  EXPECT_GE(vision.finds - finds, 8);
  EXPECT_LE(vision.finds - finds, 10);
}

TEST_F(HandTracksTest, ASecondHandIsReportedWithinAQuarterOfASecond) {
  vision.hands = {{.box = {{150, 200}, 90, 0}}};
  next(20);
  vision.hands.push_back({.box = {{450, 200}, 90, 0}});
  EXPECT_THAT(next(8), SizeIs(2));
}

TEST_F(HandTracksTest, OneHandIsNeverReportedTwice) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  vision.phantoms = {{{315, 215}, 80, 0}};  // A second candidate on the same hand.
  for (int frame = 0; frame < 60; ++frame) {
    vision.hands[0].box.centre.x += frame % 2 ? 20 : -20;
    ASSERT_THAT(next(), SizeIs(1)) << frame;
  }
}

TEST_F(HandTracksTest, WhenOneHandLeavesBesideAnotherTheOtherIsNotReportedTwice) {
  vision.hands = {{.box = {{300, 200}, 90, 0}, .right = 0.1},
                  {.box = {{350, 200}, 90, 0}, .right = 0.9}};
  const int id = idAt(next(10), {350, 200});
  vision.hands.erase(vision.hands.begin());
  const auto hands = next();
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_EQ(hands[0].id, id);
}

TEST_F(HandTracksTest, TwoHandsThatPassEachOtherNeverSwap) {
  vision.hands = {{.box = {{150, 180}, 90, 0}, .right = 0.1},
                  {.box = {{490, 300}, 90, 0}, .right = 0.9}};
  const auto start = next();
  const int left = idAt(start, {150, 180});
  const int right = idAt(start, {490, 300});
  for (int frame = 0; frame < 34; ++frame) {
    vision.hands[0].box.centre.x += 10;
    vision.hands[1].box.centre.x -= 10;
    const auto hands = next();
    EXPECT_EQ(idAt(hands, vision.hands[0].box.centre), left) << frame;
    EXPECT_EQ(idAt(hands, vision.hands[1].box.centre), right) << frame;
  }
}

TEST_F(HandTracksTest, AHandThatCrossesBeforeAnotherKeepsItsIdentityAndIsReportedOnce) {
  vision.hands = {{.box = {{150, 240}, 90, 0}, .right = 0.1, .isFront = true},
                  {.box = {{450, 240}, 90, 0}, .right = 0.9}};
  const int front = idAt(next(5), {150, 240});
  for (int frame = 0; frame < 40; ++frame) {
    vision.hands[0].box.centre.x += 12;
    const auto hands = next();
    EXPECT_EQ(idAt(hands, vision.hands[0].box.centre), front) << frame;
    if (hands.size() == 2) {
      EXPECT_FALSE(coverSameHand(boxOf(hands[0].landmarks), boxOf(hands[1].landmarks))) << frame;
    }
  }
  EXPECT_THAT(next(8), SizeIs(2));  // The covered hand is found again.
}

TEST_F(HandTracksTest, ReadingsThatLandOnTheOtherHandGoToItsTrack) {
  vision.hands = {{.box = {{270, 240}, 90, 0}, .right = 0.1},
                  {.box = {{330, 280}, 90, 0}, .right = 0.9}};
  const auto start = next(10);
  const int left = idAt(start, {270, 240});
  const int right = idAt(start, {330, 280});
  // Each is now nearer to where the other one was.
  vision.hands[0].box.centre = {320, 258};
  vision.hands[1].box.centre = {280, 262};
  const auto hands = next();
  EXPECT_EQ(idAt(hands, {320, 258}), left);
  EXPECT_EQ(idAt(hands, {280, 262}), right);
}

TEST_F(HandTracksTest, TwoHandsAreNotBothRightOnes) {
  vision.hands = {{.box = {{150, 200}, 90, 0}, .right = 0.85},
                  {.box = {{450, 200}, 90, 0}, .right = 0.99}};
  std::vector<TrackedHand> hands;
  for (int frame = 0; frame < 30; ++frame) hands = next();
  ASSERT_EQ(hands.size(), 2u);
  for (const TrackedHand& hand : hands) {
    const bool isSurer = boxOf(hand.landmarks).centre.x > 300;
    EXPECT_EQ(hand.chirality, isSurer ? Chirality::right : Chirality::left);
  }
}

TEST_F(HandTracksTest, NoOrderOfEventsReportsMoreThanTwoHandsOrOneTwice) {
  std::mt19937 random(7);
  const auto upTo = [&](double most) {
    return most * static_cast<double>(random()) / 4294967296.0;
  };
  for (int frame = 0; frame < 3000; ++frame) {
    if (vision.hands.size() < 4 && random() % 10 == 0) {
      vision.hands.push_back(
          {.box = {{upTo(640), upTo(480)}, 20 + upTo(200), upTo(6)}, .right = upTo(1)});
    }
    if (!vision.hands.empty() && random() % 12 == 0) vision.hands.pop_back();
    for (ScriptedHand& hand : vision.hands) {
      hand.box.centre.x += upTo(60) - 30;
      hand.box.centre.y += upTo(60) - 30;
      hand.presence = random() % 8 == 0 ? upTo(1) : 1;
      hand.isFront = random() % 4 == 0;
    }
    const auto hands = next();
    ASSERT_LE(hands.size(), 2u);
    if (hands.size() == 2) {
      ASSERT_NE(hands[0].id, hands[1].id);
      ASSERT_GE(hands[0].score, hands[1].score);
      ASSERT_FALSE(coverSameHand(boxOf(hands[0].landmarks), boxOf(hands[1].landmarks))) << frame;
    }
  }
}

}  // namespace
}  // namespace platform::handpose
