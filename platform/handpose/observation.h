#pragma once

#include "platform/hand_pose_request.h"
#include "platform/handpose/hand_track.h"

namespace platform::handpose {

/// A hand as the program wants to hear of it: the joints that painting needs, in the convention of
/// the gesture rules, in shares of the picture, upwards. `width`, `height`: the picture's, >= 1.
HandObservation observationOf(const TrackedHand& hand, int width, int height);

}  // namespace platform::handpose
