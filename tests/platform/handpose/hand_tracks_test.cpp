#include "platform/handpose/hand_tracks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::ScriptedHand;
using test_support::ScriptedHandVision;
using testing::SizeIs;

constexpr double kFrame = 1.0 / 30;

/// A camera of 640 x 480 before the scripted world, thirty times a second.
class HandTracksTest : public testing::Test {
 protected:
  std::vector<TrackedHand> next() {
    const auto hands = tracks.follow(picture, time += kFrame);
    EXPECT_TRUE(hands);
    return hands ? hands.value() : std::vector<TrackedHand>();
  }
  std::vector<TrackedHand> next(int frames) {
    std::vector<TrackedHand> hands;
    for (int i = 0; i < frames; ++i) hands = next();
    return hands;
  }
  static Point centreOf(const TrackedHand& hand) { return boxOf(hand.landmarks).centre; }
  /// The id of the hand at that place; 0: there is none.
  static int idAt(const std::vector<TrackedHand>& hands, Point place) {
    for (const TrackedHand& hand : hands) {
      if (distance(centreOf(hand), place) < 15) return hand.id;
    }
    return 0;
  }
  static pixels::Image blank(int width, int height) {
    const std::vector<std::uint8_t> data(4u * width * height);
    return pixels::Image::copyOf(data.data(), width, height, 4u * width);
  }

  ScriptedHandVision vision;
  HandTracks tracks{vision};
  pixels::Image picture = blank(640, 480);
  double time = 0;
};

TEST_F(HandTracksTest, AHandIsReportedInTheFirstFrameThatShowsIt) {
  vision.hands = {{.box = {{300, 200}, 90, 0.2}}};
  const auto hands = next();
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_NEAR(centreOf(hands[0]).x, 300, 1e-6);
}

TEST_F(HandTracksTest, AFollowedHandIsReadOnceAFrameWhereItWas) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  next();
  vision.reads.clear();
  vision.hands[0].box.centre = {306, 204};
  next();
  ASSERT_THAT(vision.reads, SizeIs(1));
  EXPECT_NEAR(vision.reads[0].centre.x, 300, 1e-6);
  EXPECT_NEAR(vision.reads[0].side, 135, 1e-6);
}

TEST_F(HandTracksTest, AHandKeepsItsIdentityWhileItMoves) {
  vision.hands = {{.box = {{100, 240}, 90, 0}}};
  const int id = next()[0].id;
  for (int frame = 0; frame < 30; ++frame) {
    vision.hands[0].box.centre.x += 14;
    const auto hands = next();
    ASSERT_THAT(hands, SizeIs(1));
    EXPECT_EQ(hands[0].id, id);
    EXPECT_NEAR(centreOf(hands[0]).x, vision.hands[0].box.centre.x, 1e-6);
  }
}

TEST_F(HandTracksTest, AFastHandGetsASecondLookInItsNewPlace) {
  vision.hands = {{.box = {{100, 240}, 90, 0}}};
  next();
  vision.reads.clear();
  vision.hands[0].box.centre.x += 40;
  EXPECT_THAT(next(), SizeIs(1));
  ASSERT_THAT(vision.reads, SizeIs(2));
  EXPECT_NEAR(vision.reads[1].centre.x, 140, 1e-6);
}

TEST_F(HandTracksTest, AHandThatLeavesIsGoneWithinTwoFrames) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  next(10);
  vision.hands.clear();
  next();
  EXPECT_TRUE(next().empty());
}

TEST_F(HandTracksTest, AHandThatMovesOutOfThePictureIsGoneWithinTwoFrames) {
  vision.hands = {{.box = {{600, 200}, 90, 0}}};
  next(10);
  vision.hands[0].box.centre.x = 645;
  vision.hands[0].isFound = false;
  next();
  EXPECT_TRUE(next().empty());
}

TEST_F(HandTracksTest, AHandMissedForOneFrameKeepsItsPlaceAndItsIdentity) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  const int id = next(10)[0].id;
  vision.hands[0].presence = 0;
  const auto missed = next();
  ASSERT_THAT(missed, SizeIs(1));
  EXPECT_EQ(missed[0].id, id);
  EXPECT_NEAR(centreOf(missed[0]).x, 300, 1e-6);
  vision.hands[0].presence = 1;
  const auto back = next();
  ASSERT_THAT(back, SizeIs(1));
  EXPECT_EQ(back[0].id, id);
}

TEST_F(HandTracksTest, AHandThatJumpedOutOfItsCropIsFoundAgainInTheSameFrame) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  const int id = next(10)[0].id;
  vision.hands[0].box.centre.x = 390;
  const auto hands = next();
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_EQ(hands[0].id, id);
  EXPECT_NEAR(centreOf(hands[0]).x, 390, 1e-6);
}

TEST_F(HandTracksTest, AHandThatComesBackLaterIsANewOne) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  const int id = next(10)[0].id;
  vision.hands[0].presence = 0;
  next(5);
  vision.hands[0].presence = 1;
  const auto hands = next();
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_NE(hands[0].id, id);
}

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

TEST_F(HandTracksTest, WhatOnlyTheCloserLookTakesForAHandIsGivenUp) {
  vision.hands = {{.box = {{300, 200}, 90, 0}, .presence = 0.7}};
  ASSERT_THAT(next(), SizeIs(1));
  vision.hands[0].isFound = false;
  EXPECT_THAT(next(25), SizeIs(0));
}

TEST_F(HandTracksTest, WhatOnlyTheCloserLookTakesForAHandIsGivenUpBesideARealOneToo) {
  vision.hands = {{.box = {{150, 200}, 90, 0}, .presence = 0.7}, {.box = {{450, 200}, 90, 0}}};
  ASSERT_THAT(next(), SizeIs(2));
  vision.hands[0].isFound = false;
  const auto hands = next(50);
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_NEAR(centreOf(hands[0]).x, 450, 1e-6);
}

TEST_F(HandTracksTest, AFaceThatBothNetworksOnlyHalfBelieveInIsGivenUp) {
  vision.hands = {{.box = {{300, 200}, 90, 0}, .presence = 0.7, .found = 0.5}};
  ASSERT_THAT(next(), SizeIs(1));
  vision.hands[0].found = 0.38;
  EXPECT_THAT(next(25), SizeIs(0));
}

TEST_F(HandTracksTest, AHandThatIsReadSurelyIsKeptThoughTheSearchDoesNotSeeIt) {
  vision.hands = {{.box = {{300, 200}, 90, 0}, .presence = 0.95}};
  const int id = next()[0].id;
  vision.hands[0].isFound = false;
  const auto hands = next(150);
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_EQ(hands[0].id, id);
}

TEST_F(HandTracksTest, AHandThatIsReadUnsurelyIsKeptWhileTheSearchSeesItNowAndThen) {
  vision.hands = {{.box = {{300, 200}, 90, 0}, .presence = 0.7}};
  const int id = next()[0].id;
  for (int frame = 0; frame < 150; ++frame) {
    vision.hands[0].isFound = frame % 15 < 8;
    const auto hands = next();
    ASSERT_THAT(hands, SizeIs(1)) << frame;
    EXPECT_EQ(hands[0].id, id);
  }
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

TEST_F(HandTracksTest, AFastCameraDoesNotMakeTheSearchFaster) {
  for (int frame = 0; frame < 240; ++frame) {
    ASSERT_TRUE(tracks.follow(picture, frame / 240.0));
  }
  EXPECT_LE(vision.finds, 34);
}

TEST_F(HandTracksTest, ASearchEndsWithTheFirstCloserLookInVain) {
  for (int i = 0; i < 5; ++i) vision.phantoms.push_back({{60.0 + 120 * i, 100}, 60, 0});
  next();
  EXPECT_THAT(vision.reads, SizeIs(1));
}

TEST_F(HandTracksTest, ThingsThatOnlyLookLikeHandsDoNotHideAHandForLong) {
  for (int i = 0; i < 5; ++i) vision.phantoms.push_back({{60.0 + 120 * i, 100}, 60, 0});
  vision.hands = {{.box = {{500, 300}, 90, 0}}};
  EXPECT_THAT(next(6), SizeIs(1));
}

TEST_F(HandTracksTest, APlaceThatWasNoHandIsLookedAtAgainInTheNextRound) {
  vision.phantoms = {{{100, 100}, 90, 0}, {{300, 100}, 90, 0}};
  next(2);
  vision.phantoms.pop_back();
  vision.hands = {{.box = {{300, 100}, 90, 0}}};
  EXPECT_THAT(next(3), SizeIs(1));
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

TEST_F(HandTracksTest, ChiralityDoesNotFlickerWhileTheNetworkDoes) {
  vision.hands = {{.box = {{300, 200}, 90, 0}, .right = 0.9}};
  next(5);
  std::mt19937 random(1);
  for (int frame = 0; frame < 300; ++frame) {
    vision.hands[0].right = random() % 10 < 3 ? 0.1 : 0.9;
    const auto hands = next();
    ASSERT_THAT(hands, SizeIs(1));
    ASSERT_EQ(hands[0].chirality, Chirality::right) << frame;
  }
}

TEST_F(HandTracksTest, AFailureIsHandedOnAndTheHandIsFollowedAfterwards) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  const int id = next(3)[0].id;
  vision.failure = Error{"Out of memory."};
  const auto failed = tracks.follow(picture, time += kFrame);
  ASSERT_FALSE(failed);
  EXPECT_EQ(failed.error().description, "Out of memory.");
  vision.failure.reset();
  const auto hands = next();
  ASSERT_THAT(hands, SizeIs(1));
  EXPECT_EQ(hands[0].id, id);
}

TEST_F(HandTracksTest, AfterALongBreakOrAStepBackInTimeEverythingBeginsAnew) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  const int first = next(3)[0].id;
  time += 2;
  const int second = next()[0].id;
  EXPECT_NE(second, first);
  time -= 1;
  EXPECT_NE(next()[0].id, second);
}

TEST_F(HandTracksTest, APictureOfAnotherSizeIsANewBeginning) {
  vision.hands = {{.box = {{300, 200}, 90, 0}}};
  const int first = next(3)[0].id;
  picture = blank(800, 600);
  EXPECT_NE(next()[0].id, first);
}

TEST_F(HandTracksTest, AHandTooSmallToReadIsNoHand) {
  vision.hands = {{.box = {{300, 200}, 6, 0}}};
  EXPECT_TRUE(next(5).empty());
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
