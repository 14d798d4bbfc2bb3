#pragma once

#include "hand_rig.h"

namespace training::render {

/// What a hand is doing; the shares of the kinds are in hand_poses.cpp.
enum class Gesture {
  openSpread,
  openTogether,
  relaxed,
  fist,
  pointing,
  pinch,      ///< Thumb and index finger touch.
  nearPinch,  ///< Thumb and index finger are up to 0.8 hand sizes apart, facing each other.
  okSign,
  otherTouch,  ///< The thumb touches another finger.
  thumbInPalm,
  counting,  ///< Some fingers up, the others folded.
  anything,
  count
};

Gesture randomGesture(Random& random);

/// A hand that makes `gesture`, without fingers running through each other where that can be
/// helped.
HandPose randomHandPose(const HandRig& rig, Gesture gesture, Random& random);

}  // namespace training::render
