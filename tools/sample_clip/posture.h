#pragma once

#include <array>
#include <vector>

#include "platform/hand_pose_request.h"
#include "tools/sample_clip/choreography.h"

namespace sample_clip {

/// A place in the camera's picture: image heights from its left and from its bottom edge.
struct Place {
  double x = 0;
  double y = 0;
};

Place operator+(Place a, Place b);
Place operator*(double factor, Place place);
Place between(Place a, Place b, double t);

/// Where the parts of one hand are; fingers from the thumb to the little finger.
struct HandPosture {
  platform::Chirality chirality = platform::Chirality::unknown;
  double size = 0;  ///< From wrist to middle knuckle.
  Place wrist;
  std::array<Place, 5> knuckles;
  std::array<Place, 5> bends;  ///< The joint in the middle of each finger.
  std::array<Place, 5> tips;
};

/// The painter's hands at one moment, seen by the camera (so not mirrored); those below the edge
/// of the picture too. The right one first.
std::vector<HandPosture> handsAt(const Moment& moment);

/// What a detector would see of a hand in a frame of kAspect.
platform::HandObservation observed(const HandPosture& hand);

}  // namespace sample_clip
