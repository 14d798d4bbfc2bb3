#pragma once

#include "tools/sample_clip/performance.h"

namespace sample_clip {

/// The sample clip's performance: the word "ahoy" in the air, two letters of it in one colour and
/// two in the next, then a wave above it while moving nearer to the camera.
Performance perform();

}  // namespace sample_clip
