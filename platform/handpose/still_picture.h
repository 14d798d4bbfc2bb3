#pragma once

#include <vector>

#include "platform/handpose/hand_track.h"
#include "platform/handpose/hand_vision.h"

namespace platform::handpose {

/// The hands in one picture that has no neighbours in time: at most `most`, best first. Takes its
/// time to look closer than HandTracks can.
Result<std::vector<TrackedHand>> handsInStillPicture(HandVision& vision,
                                                     const pixels::Image& picture,
                                                     std::size_t most);

}  // namespace platform::handpose
