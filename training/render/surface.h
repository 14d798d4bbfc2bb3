#pragma once

#include "hand_rig.h"

namespace training::render {

/// Where on the body a vertex lies; the same for all people.
struct SurfacePoint {
  Vec3 place;             ///< On the neutral body: where textures are looked up.
  float arm = -1;         ///< 0 shoulder, 1 elbow, 2 wrist, above 2 the hand; -1 off the arms.
  int finger = -1;        ///< -1: none.
  float alongFinger = 0;  ///< 0..3: joint and the share of its bone.
  float palmar = 0;       ///< 1 palm or pad .. -1 back.
  float nailAlong = -9, nailAcross = 0,
        nailUp = 0;       ///< On the fingertips' bones; nailUp 1 is the back.
  signed char side = -1;  ///< Whose arm: 0 left, 1 right, -1 neither.
};

std::vector<SurfacePoint> surfaceOf(const Human& human);

}  // namespace training::render
