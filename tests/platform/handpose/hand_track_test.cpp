#include "platform/handpose/hand_track.h"

#include <gtest/gtest.h>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::openHand;

HandReading readingAt(double x, double size, double right = 0.95, double presence = 0.9) {
  return {openHand({{x, 200}, size, 0}), presence, right};
}

TEST(HandTrack, LooksNextWhereTheJointsWere) {
  HandTrack track(1, readingAt(100, 80), {});
  track.follow(readingAt(130, 80));
  EXPECT_NEAR(track.crop().centre.x, 130, 1e-9);
  EXPECT_NEAR(track.crop().side, 120, 1e-9);
}

TEST(HandTrack, TheCropOfAHandThatShrinksAtOnceShrinksSlowly) {
  HandTrack track(1, readingAt(100, 100), {});
  track.follow(readingAt(100, 20));
  EXPECT_NEAR(track.crop().side, 90, 1e-9);
  track.follow(readingAt(100, 20));
  EXPECT_NEAR(track.crop().side, 54, 1e-9);
}

TEST(HandTrack, AFarReadingIsStrangerThanANearOne) {
  const HandTrack track(1, readingAt(100, 80), {});
  EXPECT_LT(track.strangeness(readingAt(110, 80)), track.strangeness(readingAt(180, 80)));
}

TEST(HandTrack, AReadingOfTheOtherSideIsStranger) {
  const HandTrack track(1, readingAt(100, 80, 0.95), {});
  EXPECT_LT(track.strangeness(readingAt(100, 80, 0.95)),
            track.strangeness(readingAt(100, 80, 0.05)));
}

TEST(HandTrack, AMissedHandStaysWhereItWasWithLessScore) {
  HandTrack track(7, readingAt(100, 80), {});
  const TrackedHand before = track.report();
  track.miss();
  const TrackedHand after = track.report();
  EXPECT_EQ(after.id, 7);
  EXPECT_EQ(after.landmarks, before.landmarks);
  EXPECT_LT(after.score, before.score);
  track.follow(readingAt(100, 80));
  EXPECT_EQ(track.misses(), 0);
}

TEST(HandTrack, IsAPhantomAfterThreeSearchesInARowThatDidNotConfirmIt) {
  HandTrack track(1, readingAt(100, 80, 0.95, 0.6), {});
  for (double found : {0.0, 0.3, 0.9, 0.3, 0.0}) track.confirm(found);
  EXPECT_FALSE(track.isPhantom());
  track.confirm(0.3);
  EXPECT_TRUE(track.isPhantom());
}

TEST(HandTrack, OnceReadSurelyItIsNoPhantom) {
  HandTrack track(1, readingAt(100, 80, 0.95, 0.95), {});
  for (int search = 0; search < 10; ++search) track.confirm(0);
  EXPECT_FALSE(track.isPhantom());
}

}  // namespace
}  // namespace platform::handpose
