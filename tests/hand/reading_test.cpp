#include "hand/reading.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <ostream>
#include <string>

#include "tests/support/hands.h"

namespace hand {
namespace {

using platform::Chirality;
using platform::HandJoint;
using platform::HandObservation;
using support::pinchingHand;
using support::spreadHand;

constexpr double kSquare = 1.0;
constexpr double kWide = 16.0 / 9;

Reading spreadReading() {
  return reading(spreadHand({}), kSquare).value();
}

/// A joint by the name under which a failing test shows it.
struct NamedJoint {
  const char* name;
  HandJoint joint;

  friend void PrintTo(const NamedJoint& named, std::ostream* out) { *out << named.name; }
};

std::string nameOf(const testing::TestParamInfo<NamedJoint>& info) {
  return info.param.name;
}

class RequiredJoint : public testing::TestWithParam<NamedJoint> {};

INSTANTIATE_TEST_SUITE_P(Reading, RequiredJoint,
                         testing::Values(NamedJoint{"Wrist", HandJoint::wrist},
                                         NamedJoint{"ThumbTip", HandJoint::thumbTip},
                                         NamedJoint{"IndexTip", HandJoint::indexTip},
                                         NamedJoint{"MiddleKnuckle", HandJoint::middleMCP}),
                         nameOf);

TEST_P(RequiredJoint, AtTheConfidenceLimitMakesTheHandYieldNoReading) {
  HandObservation seen = pinchingHand({});
  seen[GetParam().joint]->confidence = 0.3F;
  EXPECT_FALSE(reading(seen, kSquare));
}

TEST_P(RequiredJoint, JustAboveTheConfidenceLimitIsEnough) {
  HandObservation seen = pinchingHand({});
  seen[GetParam().joint]->confidence = std::nextafter(0.3F, 1.0F);
  EXPECT_TRUE(reading(seen, kSquare));
}

TEST_P(RequiredJoint, ThatIsMissingMakesTheHandYieldNoReading) {
  HandObservation seen = pinchingHand({});
  seen[GetParam().joint].reset();
  EXPECT_FALSE(reading(seen, kSquare));
}

TEST_P(RequiredJoint, WithAConfidenceThatIsNoNumberCountsAsMissing) {
  HandObservation seen = pinchingHand({});
  seen[GetParam().joint]->confidence = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(reading(seen, kSquare));
}

class OptionalTip : public testing::TestWithParam<NamedJoint> {};

INSTANTIATE_TEST_SUITE_P(Reading, OptionalTip,
                         testing::Values(NamedJoint{"MiddleTip", HandJoint::middleTip},
                                         NamedJoint{"RingTip", HandJoint::ringTip},
                                         NamedJoint{"LittleTip", HandJoint::littleTip}),
                         nameOf);

TEST_P(OptionalTip, ThatIsMissingLeavesAReadingThatIsNeverSpread) {
  HandObservation seen = spreadHand({});
  seen[GetParam().joint].reset();
  const std::optional<Reading> measured = reading(seen, kSquare);
  ASSERT_TRUE(measured);
  EXPECT_FALSE(isSpread(*measured, kSquare));
}

TEST_P(OptionalTip, AtTheConfidenceLimitIsAbsentFromTheReading) {
  HandObservation seen = spreadHand({});
  seen[GetParam().joint]->confidence = 0.3F;
  const Reading measured = reading(seen, kSquare).value();
  EXPECT_EQ(measured.middleTip.has_value(), GetParam().joint != HandJoint::middleTip);
  EXPECT_EQ(measured.ringTip.has_value(), GetParam().joint != HandJoint::ringTip);
  EXPECT_EQ(measured.littleTip.has_value(), GetParam().joint != HandJoint::littleTip);
}

TEST(Reading, TakesEveryJointAndTheChiralityAsReported) {
  const HandObservation seen = spreadHand({.chirality = Chirality::right});
  const Reading measured = reading(seen, kSquare).value();
  const auto at = [&](HandJoint joint) { return Position{seen[joint]->x, seen[joint]->y}; };
  EXPECT_EQ(measured.chirality, Chirality::right);
  EXPECT_EQ(measured.wrist, at(HandJoint::wrist));
  EXPECT_EQ(measured.thumbTip, at(HandJoint::thumbTip));
  EXPECT_EQ(measured.indexTip, at(HandJoint::indexTip));
  EXPECT_EQ(measured.middleMCP, at(HandJoint::middleMCP));
  EXPECT_EQ(measured.middleTip, at(HandJoint::middleTip));
  EXPECT_EQ(measured.ringTip, at(HandJoint::ringTip));
  EXPECT_EQ(measured.littleTip, at(HandJoint::littleTip));
}

TEST(Reading, MeasuresTheHandFromTheWristToTheMiddleKnuckleInImageHeights) {
  HandObservation seen = pinchingHand({});
  seen[HandJoint::wrist] = platform::RecognizedPoint{0.2, 0.4, 1.0F};
  seen[HandJoint::middleMCP] = platform::RecognizedPoint{0.3, 0.4, 1.0F};
  EXPECT_NEAR(reading(seen, kWide)->size, 0.1 * kWide, 1e-12);
}

TEST(Reading, DistancesOnAWideFrameAreInImageHeights) {
  EXPECT_NEAR(distance({0.3, 0.5}, {0.4, 0.5}, kWide), 0.17777777777777778, 1e-12);
  EXPECT_NEAR(distance({0.3, 0.5}, {0.3, 0.6}, kWide), 0.1, 1e-12);
}

TEST(Spread, AnOpenHandWithItsFingersApartIsSpreadOnEveryFrame) {
  EXPECT_TRUE(isSpread(spreadReading(), kSquare));
  EXPECT_TRUE(isSpread(reading(spreadHand({.aspect = kWide}), kWide).value(), kWide));
}

TEST(Spread, AHandFartherAwayThanTheLimitIsNeverSpread) {
  EXPECT_TRUE(isSpread(reading(spreadHand({.size = 0.0201}), kSquare).value(), kSquare));
  EXPECT_FALSE(isSpread(reading(spreadHand({.size = 0.0199}), kSquare).value(), kSquare));
}

TEST(Spread, AFistIsNotSpread) {
  EXPECT_FALSE(isSpread(reading(pinchingHand({.ratio = 0.9}), kSquare).value(), kSquare));
}

TEST(Spread, AHandAtTheSmallestSizeIsStillSpread) {
  Reading measured = spreadReading();
  measured.size = 0.02;
  EXPECT_TRUE(isSpread(measured, kSquare));
  measured.size = std::nextafter(0.02, 0.0);
  EXPECT_FALSE(isSpread(measured, kSquare));
}

TEST(Spread, OneCurledFingerIsEnoughToEndIt) {
  using enum HandJoint;
  for (const HandJoint tip : {indexTip, middleTip, ringTip, littleTip}) {
    HandObservation seen = spreadHand({});
    const platform::RecognizedPoint from = *seen[wrist];
    // 1.5 hand sizes from the wrist instead of 2.
    seen[tip]->x = from.x + (seen[tip]->x - from.x) * 0.75;
    seen[tip]->y = from.y + (seen[tip]->y - from.y) * 0.75;
    EXPECT_FALSE(isSpread(reading(seen, kSquare).value(), kSquare)) << static_cast<int>(tip);
  }
}

TEST(Spread, TwoFingersPressedTogetherAreEnoughToEndIt) {
  using enum HandJoint;
  const std::array fingers{indexTip, middleTip, ringTip, littleTip};
  // Along a line across the hand, half a hand size apart but for one pair.
  for (const std::size_t pressed : {1, 2, 3}) {
    for (const double gap : {0.29, 0.31}) {
      HandObservation seen = spreadHand({});
      double x = seen[indexTip]->x;
      const double y = seen[wrist]->y + 0.2 * 2;
      for (std::size_t i = 0; i < fingers.size(); ++i) {
        if (i > 0) x += (i == pressed ? gap : 0.5) * 0.2;
        seen[fingers[i]]->x = x;
        seen[fingers[i]]->y = y;
      }
      EXPECT_EQ(isSpread(reading(seen, kSquare).value(), kSquare), gap > 0.3)
          << "finger " << pressed << " and the one before, " << gap << " apart";
    }
  }
}

TEST(Spread, AThumbFoldedOntoTheIndexFingerIsNotSpread) {
  Reading measured = spreadReading();
  measured.thumbTip = {measured.indexTip.x - 0.69 * measured.size, measured.indexTip.y};
  EXPECT_FALSE(isSpread(measured, kSquare));
  measured.thumbTip = {measured.indexTip.x - 0.71 * measured.size, measured.indexTip.y};
  EXPECT_TRUE(isSpread(measured, kSquare));
}

TEST(Spread, DistancesExactlyAtTheirLimitsPass) {
  // A hand of size 1 whose finger tips meet every limit exactly.
  Reading measured;
  measured.wrist = {0, 0};
  measured.size = 1;
  measured.indexTip = {0, 1.6};
  measured.middleTip = Position{0.3, 1.6};
  measured.ringTip = Position{0, 1.6};
  measured.littleTip = Position{0.3, 1.6};
  measured.thumbTip = {0.7, 1.6};
  EXPECT_TRUE(isSpread(measured, kSquare));
}

TEST(Spread, ADistanceThatIsNoNumberPasses) {
  Reading measured = spreadReading();
  measured.thumbTip.x = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(isSpread(measured, kSquare));
}

TEST(Spread, TheThumbIsNotComparedWithTheWrist) {
  Reading measured = spreadReading();
  measured.thumbTip = measured.wrist;
  EXPECT_TRUE(isSpread(measured, kSquare));
}

}  // namespace
}  // namespace hand
