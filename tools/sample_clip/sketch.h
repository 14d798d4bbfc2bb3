#pragma once

#include "pixels/surface.h"
#include "tools/sample_clip/choreography.h"

namespace sample_clip {

/// Draws what the camera sees at one moment: a room, the painter, and the painter's hands.
pixels::Surface sketch(const Moment& moment, int width, int height);

}  // namespace sample_clip
