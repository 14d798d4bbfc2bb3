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

/// A hand between two poses; `t` from 0 to 1.
HandPose between(const HandPose& a, const HandPose& b, float t);

/// The same hand with thumb and index finger stretched away from each other.
HandPose stretched(HandPose pinched);

/// The hand of somebody who paints: a pinch, two fingers or the whole hand on the way to one, or
/// the open, spread hand that changes the colour.
HandPose paintingHandPose(const HandRig& rig, Random& random);

}  // namespace training::render
