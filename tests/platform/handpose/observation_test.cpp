#include "platform/handpose/observation.h"

#include <gtest/gtest.h>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

TrackedHand rightHand() {
  return {.id = 1,
          .landmarks = test_support::openHand({{480, 90}, 120, 0}, 0.8),
          .chirality = Chirality::right,
          .score = 0.9};
}

TEST(Observation, CountsFromTheBottomLeftInSharesOfThePicture) {
  TrackedHand hand = rightHand();
  at(hand.landmarks, Joint::indexTip).at = {480, 90};
  const HandObservation observation = observationOf(hand, 640, 360);
  EXPECT_DOUBLE_EQ(observation[HandJoint::indexTip]->x, 0.75);
  EXPECT_DOUBLE_EQ(observation[HandJoint::indexTip]->y, 0.75);
}

TEST(Observation, TakesEachJointFromItsFinger) {
  TrackedHand hand = rightHand();
  double confidence = 0;
  for (Landmark& landmark : hand.landmarks) {
    landmark.confidence = confidence;
    confidence += 0.01;
  }
  const HandObservation observation = observationOf(hand, 640, 360);
  EXPECT_FLOAT_EQ(observation[HandJoint::wrist]->confidence, 0.00f);
  EXPECT_FLOAT_EQ(observation[HandJoint::thumbTip]->confidence, 0.04f);
  EXPECT_FLOAT_EQ(observation[HandJoint::indexTip]->confidence, 0.08f);
  EXPECT_FLOAT_EQ(observation[HandJoint::middleMCP]->confidence, 0.09f);
  EXPECT_FLOAT_EQ(observation[HandJoint::middleTip]->confidence, 0.12f);
  EXPECT_FLOAT_EQ(observation[HandJoint::ringTip]->confidence, 0.16f);
  EXPECT_FLOAT_EQ(observation[HandJoint::littleTip]->confidence, 0.20f);
}

TEST(Observation, ReportsWristAndKnuckleWhereTheGestureRulesExpectThem) {
  const TrackedHand hand = rightHand();
  const Landmarks reported = inReportedConvention(hand.landmarks);
  const HandObservation observation = observationOf(hand, 640, 360);
  EXPECT_DOUBLE_EQ(observation[HandJoint::wrist]->y, 1 - at(reported, Joint::wrist).at.y / 360);
  EXPECT_DOUBLE_EQ(observation[HandJoint::middleMCP]->y,
                   1 - at(reported, Joint::middleMCP).at.y / 360);
  EXPECT_EQ(observation.chirality, Chirality::right);
}

TEST(Observation, ALeftHandIsReportedAsTheMirrorImageOfARightOne) {
  const TrackedHand right = rightHand();
  TrackedHand left = right;
  left.chirality = Chirality::left;
  for (Landmark& landmark : left.landmarks) landmark.at.x = 640 - landmark.at.x;
  const HandObservation ofRight = observationOf(right, 640, 360);
  const HandObservation ofLeft = observationOf(left, 640, 360);
  for (HandJoint joint : kAllHandJoints) {
    EXPECT_DOUBLE_EQ(ofLeft[joint]->x, 1 - ofRight[joint]->x);
    EXPECT_DOUBLE_EQ(ofLeft[joint]->y, ofRight[joint]->y);
  }
}

}  // namespace
}  // namespace platform::handpose
