#pragma once

#include "hand_rig.h"

namespace training::render {

/// How deep fingers lie in each other and in the palm, summed, as capsules; decimetres. `contact`:
/// the finger that the thumb may touch, or -1.
float penetration(const HandRig& rig, const HandPose& pose, int contact);

}  // namespace training::render
