#include "hand/hand_tracker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/fake_hand_pose_request.h"
#include "tests/support/hands.h"

namespace hand {
namespace {

using platform::Chirality;
using platform::HandJoint;
using platform::HandObservation;
using support::pinchingHand;
using support::spreadHand;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Optional;

/// A tracker and the hands it is shown, one square frame every 30th of a second.
class HandTrackerTest : public testing::Test {
 protected:
  HandOutput see(std::vector<HandObservation> hands) {
    request_.nextSees(std::move(hands));
    return tracker_.process(support::frameOf(64, 64), time_ += 1.0 / 30);
  }

  HandOutput fail(const std::string& why) {
    request_.nextFails(why);
    return tracker_.process(support::frameOf(64, 64), time_ += 1.0 / 30);
  }

  support::FakeHandPoseRequest request_;
  HandTracker tracker_{request_};
  double time_ = 100;
};

/// The pen sits where it was first seen, so filters change nothing.
MATCHER_P2(PenAt, x, y, "") {
  return testing::ExplainMatchResult(DoubleNear(x, 1e-9), arg.x, result_listener) &&
         testing::ExplainMatchResult(DoubleNear(y, 1e-9), arg.y, result_listener);
}

TEST_F(HandTrackerTest, ThePenGoesDownBelowOneRatioAndUpAboveALargerOne) {
  std::vector<bool> down;
  for (const double ratio : {0.6, 0.4, 0.25, 0.4, 0.55}) {
    down.push_back(see({pinchingHand({.ratio = ratio})}).pen->down);
  }
  EXPECT_THAT(down, ElementsAre(false, false, true, true, false));
}

TEST_F(HandTrackerTest, ARatioExactlyAtAThresholdChangesNothing) {
  // Powers of two keep the ratios exact: size 1, tips apart by the ratio itself.
  const auto exact = [](double ratio) {
    HandObservation seen = pinchingHand({});
    seen[HandJoint::wrist] = platform::RecognizedPoint{0, 0, 1};
    seen[HandJoint::middleMCP] = platform::RecognizedPoint{0, 1, 1};
    seen[HandJoint::thumbTip] = platform::RecognizedPoint{0, 0.5, 1};
    seen[HandJoint::indexTip] = platform::RecognizedPoint{ratio, 0.5, 1};
    return seen;
  };
  EXPECT_FALSE(see({exact(0.3)}).pen->down);
  EXPECT_TRUE(see({exact(0.29)}).pen->down);
  EXPECT_TRUE(see({exact(0.5)}).pen->down);
  EXPECT_FALSE(see({exact(0.51)}).pen->down);
}

TEST_F(HandTrackerTest, OneHandSpreadsWhileTheOtherIsThePen) {
  const HandOutput output =
      see({spreadHand({.chirality = Chirality::left, .x = 0.2, .size = 0.1}),
           pinchingHand({.chirality = Chirality::right, .x = 0.7, .y = 0.6})});
  EXPECT_TRUE(output.spread);
  EXPECT_EQ(output.handCount, 2);
  EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
  EXPECT_TRUE(output.pen->down);
}

TEST_F(HandTrackerTest, ASpreadHandThatIsNotTheColourHandIsStillNoPen) {
  tracker_.setColorHand(ColorHand::right);
  const HandOutput output =
      see({spreadHand({.chirality = Chirality::left, .x = 0.2, .size = 0.3}),
           pinchingHand({.chirality = Chirality::right, .x = 0.7, .y = 0.6})});
  EXPECT_FALSE(output.spread);
  EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
}

TEST_F(HandTrackerTest, OfTwoHandsOfUnknownSideTheLargerOneIsThePen) {
  const HandOutput output = see(
      {pinchingHand({.x = 0.2, .size = 0.10}), pinchingHand({.x = 0.7, .y = 0.6, .size = 0.15})});
  EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
}

TEST_F(HandTrackerTest, OfTwoHandsTheOneThatIsNotTheColourHandIsThePen) {
  const std::vector<HandObservation> hands{
      pinchingHand({.chirality = Chirality::left, .x = 0.2, .y = 0.5, .size = 0.3}),
      pinchingHand({.chirality = Chirality::right, .x = 0.7, .y = 0.6, .size = 0.1})};
  EXPECT_THAT(see(hands).pen, Optional(PenAt(0.3, 0.4)));

  tracker_.setColorHand(ColorHand::right);
  see({});
  EXPECT_THAT(see(hands).pen, Optional(PenAt(0.8, 0.5)));
}

TEST_F(HandTrackerTest, AKnownPenSideBeatsALargerHandOfUnknownSide) {
  const HandOutput output =
      see({pinchingHand({.chirality = Chirality::unknown, .x = 0.2, .size = 0.3}),
           pinchingHand({.chirality = Chirality::right, .x = 0.7, .y = 0.6, .size = 0.1})});
  EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
}

TEST_F(HandTrackerTest, ALoneColourHandIsThePen) {
  const HandOutput output = see({pinchingHand({.chirality = Chirality::left, .x = 0.7, .y = 0.6})});
  EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
}

TEST_F(HandTrackerTest, WithEitherTheLargerClosedHandIsThePen) {
  tracker_.setColorHand(ColorHand::either);
  for (const auto& [smaller, larger] : {std::pair(Chirality::right, Chirality::left),
                                        std::pair(Chirality::left, Chirality::right)}) {
    see({});
    const HandOutput output =
        see({pinchingHand({.chirality = smaller, .x = 0.2, .size = 0.1}),
             pinchingHand({.chirality = larger, .x = 0.7, .y = 0.6, .size = 0.2})});
    EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
  }
}

TEST_F(HandTrackerTest, WithEitherAnyHandChangesTheColour) {
  tracker_.setColorHand(ColorHand::either);
  for (const Chirality side : {Chirality::left, Chirality::unknown, Chirality::right}) {
    EXPECT_TRUE(see({spreadHand({.chirality = side})}).spread);
  }
}

TEST_F(HandTrackerTest, OnlyTheColourHandOrOneOfUnknownSideChangesTheColour) {
  EXPECT_TRUE(see({spreadHand({.chirality = Chirality::left})}).spread);
  EXPECT_TRUE(see({spreadHand({.chirality = Chirality::unknown})}).spread);
  EXPECT_FALSE(see({spreadHand({.chirality = Chirality::right})}).spread);
  tracker_.setColorHand(ColorHand::right);
  EXPECT_FALSE(see({spreadHand({.chirality = Chirality::left})}).spread);
  EXPECT_TRUE(see({spreadHand({.chirality = Chirality::unknown})}).spread);
  EXPECT_TRUE(see({spreadHand({.chirality = Chirality::right})}).spread);
}

TEST_F(HandTrackerTest, ALoneSpreadHandIsThePenToo) {
  const HandOutput output = see({spreadHand({.chirality = Chirality::left})});
  EXPECT_TRUE(output.spread);
  ASSERT_TRUE(output.pen);
  EXPECT_FALSE(output.pen->down);
}

TEST_F(HandTrackerTest, OfTwoSpreadHandsTheOtherThanTheColourHandIsThePen) {
  const HandOutput output =
      see({spreadHand({.chirality = Chirality::left, .x = 0.2, .size = 0.2}),
           spreadHand({.chirality = Chirality::right, .x = 0.7, .size = 0.1})});
  ASSERT_TRUE(output.pen);
  EXPECT_LT(output.pen->x, 0.5);
}

TEST_F(HandTrackerTest, OfEquallyLargeHandsTheFirstIsThePen) {
  const HandOutput output =
      see({pinchingHand({.x = 0.7, .y = 0.6}), pinchingHand({.x = 0.2, .y = 0.6})});
  EXPECT_THAT(output.pen, Optional(PenAt(0.3, 0.4)));
}

TEST_F(HandTrackerTest, HandsWithoutTheirWristsAreNoHandsAndTheNextOneStartsAfresh) {
  see({pinchingHand({.x = 0.5})});
  HandObservation first = pinchingHand({.chirality = Chirality::left});
  HandObservation second = pinchingHand({.chirality = Chirality::right});
  first[HandJoint::wrist]->confidence = 0.1F;
  second[HandJoint::wrist]->confidence = 0.3F;

  EXPECT_EQ(see({first, second}), HandOutput{});

  const HandOutput next = see({pinchingHand({.x = 0.9, .y = 0.8, .ratio = 0.4})});
  EXPECT_THAT(next.pen, Optional(PenAt(0.1, 0.2)));
  EXPECT_FALSE(next.pen->down);
}

TEST_F(HandTrackerTest, AHandThatCannotBeMeasuredIsNotCounted) {
  HandObservation wristless = pinchingHand({.x = 0.2});
  wristless[HandJoint::wrist].reset();
  EXPECT_EQ(see({wristless, pinchingHand({})}).handCount, 1);
}

TEST_F(HandTrackerTest, AHandThatShrinksAwayLiftsThePenButIsCounted) {
  EXPECT_TRUE(see({pinchingHand({.size = 0.2})}).pen->down);

  EXPECT_EQ(see({pinchingHand({.size = 0.0099})}), (HandOutput{.handCount = 1}));

  const HandOutput next = see({pinchingHand({.x = 0.9, .size = 0.3, .ratio = 0.4})});
  EXPECT_THAT(next.pen, Optional(PenAt(0.1, 0.5)));
  EXPECT_FALSE(next.pen->down);
}

TEST_F(HandTrackerTest, AHandOfExactlyTheSmallestSizeIsNoPen) {
  const auto ofSize = [](double size) {
    HandObservation seen = pinchingHand({});
    seen[HandJoint::wrist] = platform::RecognizedPoint{0, 0, 1};
    seen[HandJoint::middleMCP] = platform::RecognizedPoint{0, size, 1};
    return seen;
  };
  EXPECT_EQ(see({ofSize(0.01)}), (HandOutput{.handCount = 1}));
  EXPECT_TRUE(see({ofSize(0.0101)}).pen);
}

TEST_F(HandTrackerTest, TheColourHandSpreadsAlsoWhileTheOtherIsTooFarAwayToBeThePen) {
  const HandOutput output = see({spreadHand({.chirality = Chirality::left, .x = 0.2}),
                                 pinchingHand({.chirality = Chirality::right, .size = 0.005})});
  EXPECT_EQ(output, (HandOutput{.spread = true, .handCount = 2}));
}

TEST_F(HandTrackerTest, AHandWhoseSizeIsNoNumberIsCountedButNoPen) {
  HandObservation seen = pinchingHand({});
  seen[HandJoint::wrist]->x = std::numeric_limits<double>::quiet_NaN();
  const HandOutput output = see({seen});
  EXPECT_FALSE(output.pen);
  EXPECT_EQ(output.handCount, 1);
}

TEST_F(HandTrackerTest, AFailingDetectionSaysWhyOnEachFrameAndLiftsThePen) {
  EXPECT_TRUE(see({pinchingHand({})}).pen->down);

  EXPECT_EQ(fail("The network is gone."), (HandOutput{.errorText = "The network is gone."}));
  EXPECT_EQ(fail("The network is gone."), (HandOutput{.errorText = "The network is gone."}));

  const HandOutput next = see({pinchingHand({.x = 0.9, .ratio = 0.4})});
  EXPECT_THAT(next.pen, Optional(PenAt(0.1, 0.5)));
  EXPECT_FALSE(next.pen->down);
}

TEST_F(HandTrackerTest, NoHandsAtAllLiftThePen) {
  EXPECT_TRUE(see({pinchingHand({})}).pen->down);
  EXPECT_EQ(see({}), HandOutput{});
  EXPECT_FALSE(see({pinchingHand({.ratio = 0.4})}).pen->down);
}

TEST_F(HandTrackerTest, AHandThatIsAlreadyPinchedWhenItAppearsDrawsAtOnce) {
  EXPECT_TRUE(see({pinchingHand({.ratio = 0.29})}).pen->down);
}

TEST_F(HandTrackerTest, SmoothsPositionAndSizeEachByItsOwnFilter) {
  OneEuroFilter filterX(2.0, 10.0);
  OneEuroFilter filterY(2.0, 10.0);
  OneEuroFilter filterSize(0.7, 5.0);
  for (int i = 0; i < 10; ++i) {
    const support::Hand hand{.x = 0.3 + 0.01 * i * i, .y = 0.7 - 0.02 * i, .size = 0.1 + 0.01 * i};
    const PenSample pen = see({pinchingHand(hand)}).pen.value();
    EXPECT_NEAR(pen.x, filterX.filter(1 - hand.x, time_), 1e-9);
    EXPECT_NEAR(pen.y, filterY.filter(1 - hand.y, time_), 1e-9);
    EXPECT_NEAR(pen.size, filterSize.filter(hand.size, time_), 1e-9);
  }
}

TEST_F(HandTrackerTest, MeasuresWideFramesInTheirOwnAspect) {
  const double wide = 16.0 / 9;
  request_.nextSees({pinchingHand({.size = 0.2, .ratio = 0.29, .aspect = wide})});
  const PenSample pen = tracker_.process(support::frameOf(160, 90), 1).pen.value();
  EXPECT_NEAR(pen.size, 0.2, 1e-9);
  EXPECT_TRUE(pen.down);
}

TEST_F(HandTrackerTest, AFrameWithoutHeightIsTakenAsSquare) {
  request_.nextSees({pinchingHand({.ratio = 0.29})});
  EXPECT_TRUE(tracker_.process({}, 1).pen->down);
  request_.nextSees({pinchingHand({.ratio = 0.51})});
  EXPECT_FALSE(tracker_.process({}, 2).pen->down);
}

TEST_F(HandTrackerTest, TheColourHandMayBeSetWhileAFrameIsAnalysed) {
  EXPECT_EQ(tracker_.colorHand(), ColorHand::left);
  std::thread person([&] {
    for (int i = 0; i < 1000; ++i) tracker_.setColorHand(kAllColorHands[i % 3]);
  });
  for (int i = 0; i < 1000; ++i) see({spreadHand({}), pinchingHand({.x = 0.8})});
  person.join();
  EXPECT_EQ(tracker_.colorHand(), kAllColorHands[999 % 3]);
}

}  // namespace
}  // namespace hand
