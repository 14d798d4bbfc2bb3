#pragma once

#include "training/render/hand_rig.h"

namespace sample_clip {

/// Puts the wrist of a left arm at `target` (as near as the arm can reach), the elbow low and
/// outside. Neighbouring targets give neighbouring poses.
void reachFor(const training::render::HandRig& rig, training::render::Vec3 target,
              training::render::ArmPose& pose);

/// Turns forearm and wrist, from the angles they have now, so that palm and hand point these ways.
void turnHand(const training::render::HandRig& rig, training::render::Vec3 palm,
              training::render::Vec3 up, training::render::ArmPose& pose);

}  // namespace sample_clip
