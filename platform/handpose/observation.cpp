#include "platform/handpose/observation.h"

namespace platform::handpose {
namespace {

Joint jointFor(HandJoint joint) {
  switch (joint) {
    case HandJoint::wrist:
      return Joint::wrist;
    case HandJoint::thumbTip:
      return Joint::thumbTip;
    case HandJoint::indexTip:
      return Joint::indexTip;
    case HandJoint::middleMCP:
      return Joint::middleMCP;
    case HandJoint::middleTip:
      return Joint::middleTip;
    case HandJoint::ringTip:
      return Joint::ringTip;
    case HandJoint::littleTip:
      return Joint::littleTip;
  }
  return Joint::wrist;
}

}  // namespace

HandObservation observationOf(const TrackedHand& hand, int width, int height) {
  const Landmarks landmarks = inReportedConvention(hand.landmarks);
  HandObservation observation{.chirality = hand.chirality, .points = {}};
  for (HandJoint joint : kAllHandJoints) {
    const Landmark& landmark = at(landmarks, jointFor(joint));
    observation[joint] = {landmark.at.x / width, 1 - landmark.at.y / height,
                          static_cast<float>(landmark.confidence)};
  }
  return observation;
}

}  // namespace platform::handpose
