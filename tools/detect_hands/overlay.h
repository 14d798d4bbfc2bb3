#pragma once

#include <vector>

#include "pixels/image.h"
#include "platform/handpose/hand_track.h"

namespace tools {

/// The picture, enlarged where it is small, with the joints and bones of the hands drawn on it:
/// right hands warm, left hands cold, unsure joints hollow.
pixels::Image withHands(const pixels::Image& picture,
                        const std::vector<platform::handpose::TrackedHand>& hands);

}  // namespace tools
