#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/platform/handpose/hand_tracks_fixture.h"

namespace platform::handpose {
namespace {

using testing::SizeIs;

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

}  // namespace
}  // namespace platform::handpose
