#pragma once

#include "hand_rig.h"

namespace training::render {

/// Where the thumb's pad shall go: to a finger's pad, or to a place fixed to a bone.
struct ThumbTarget {
  int finger = 0;  ///< 0: fixed place.
  float gap = 0;   ///< Decimetres between the pads.
  int bone = 0;
  Vec3 place, normal;  ///< At rest.
};

/// Moves the thumb (and the finger it meets) until the thumb's pad is where it shall be, staying as
/// close to the pose as it can. By how far it missed, in decimetres.
float reach(const HandRig& rig, HandPose& pose, const ThumbTarget& target);

/// A place on the back or side of a finger's bone for the thumb to rest on.
ThumbTarget onFinger(const HandRig& rig, int finger, int joint, float share);

}  // namespace training::render
