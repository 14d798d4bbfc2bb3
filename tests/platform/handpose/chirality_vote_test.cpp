#include "platform/handpose/chirality_vote.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace platform::handpose {
namespace {

TEST(ChiralityVote, BeginsUnknownAndStaysSoWhileTheNetworkCannotTell) {
  ChiralityVote vote;
  EXPECT_EQ(vote.chirality(), Chirality::unknown);
  for (int frame = 0; frame < 30; ++frame) vote.add(0.5, 1);
  EXPECT_EQ(vote.chirality(), Chirality::unknown);
}

TEST(ChiralityVote, OneSureFrameDecides) {
  ChiralityVote vote;
  vote.add(0.95, 1);
  EXPECT_EQ(vote.chirality(), Chirality::right);
}

TEST(ChiralityVote, DoesNotFlickerWhenEveryThirdFrameIsWrong) {
  ChiralityVote vote;
  vote.add(0.1, 1);
  for (int frame = 0; frame < 300; ++frame) {
    vote.add(frame % 3 == 2 ? 0.9 : 0.1, 1);
    ASSERT_EQ(vote.chirality(), Chirality::left) << frame;
  }
}

TEST(ChiralityVote, SurvivesAThirdOfASecondOfTheOppositeOnceItIsSure) {
  ChiralityVote vote;
  for (int frame = 0; frame < 30; ++frame) vote.add(0.97, 1);
  for (int frame = 0; frame < 10; ++frame) {
    vote.add(0.02, 1);
    ASSERT_EQ(vote.chirality(), Chirality::right) << frame;
  }
}

TEST(ChiralityVote, ChangesWhenContradictedForLong) {
  ChiralityVote vote;
  for (int frame = 0; frame < 300; ++frame) vote.add(0.97, 1);
  for (int frame = 0; frame < 30; ++frame) vote.add(0.03, 1);
  EXPECT_EQ(vote.chirality(), Chirality::left);
}

TEST(ChiralityVote, AnUnsureHandBesideARightOneIsALeftOne) {
  ChiralityVote vote = ChiralityVote::besides(Chirality::right);
  vote.add(0.55, 1);
  EXPECT_EQ(vote.chirality(), Chirality::left);
}

TEST(ChiralityVote, ASureHandIsWhatItLooksLikeWhateverIsBesideIt) {
  ChiralityVote vote = ChiralityVote::besides(Chirality::right);
  for (int frame = 0; frame < 3; ++frame) vote.add(0.95, 1);
  EXPECT_EQ(vote.chirality(), Chirality::right);
}

TEST(ChiralityVote, OfTwoHandsThatBothLookRightTheSurerOneIsRight) {
  ChiralityVote surer;
  ChiralityVote other = ChiralityVote::besides(Chirality::right);
  surer.add(0.99, 1);
  for (int frame = 0; frame < 10; ++frame) {
    surer.add(0.99, 1, 0.85);
    other.add(0.85, 1, 0.99);
  }
  EXPECT_EQ(surer.chirality(), Chirality::right);
  EXPECT_EQ(other.chirality(), Chirality::left);
}

TEST(ChiralityVote, CertaintyAndNonsenseAreTakenInStride) {
  ChiralityVote vote;
  vote.add(std::numeric_limits<double>::quiet_NaN(), 1);
  EXPECT_EQ(vote.chirality(), Chirality::unknown);
  vote.add(1, 1);
  EXPECT_EQ(vote.chirality(), Chirality::right);
}

}  // namespace
}  // namespace platform::handpose
