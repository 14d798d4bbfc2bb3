#pragma once

#include <cstdint>

#include "strokes/stroke_point.h"
#include "training/render/vec.h"

namespace sample_clip {

/// Who performs, how they hold their hands and where the camera stands. Decimetres, radians.
struct Casting {
  std::uint64_t seed = 1;    ///< Of the person, their clothes and the light.
  float focalLength = 1.1f;  ///< In picture heights.
  /// The camera stands so far above the shoulders, and looks that way past the straight line.
  float cameraAbove = 0.7f;
  float cameraLeft = 0;
  float cameraDown = 0;
  float cameraRoll = 0;
  float handsInFront = 3.0f;  ///< Of the shoulders.
  /// Where palm and fingers of the writing hand point, as in the mirror image.
  training::render::Vec3 palm{-0.55f, -0.05f, 1};
  training::render::Vec3 up{-0.1f, 1, 0.1f};
  float curl = 0.4f;  ///< Of the three other fingers: 0 straight, 1 folded.
  /// The raised left wrist, from its shoulder.
  training::render::Vec3 otherWrist{1.8f, -0.7f, 2.4f};
  /// Of the left hand: when it changes the colour, and when it rises for other reasons.
  training::render::Vec3 otherPalm{0, 0, 1};
  training::render::Vec3 idlePalm{-1, -0.2f, 0.2f};
};

/// Draws one at random.
Casting randomCasting(std::uint64_t seed);

}  // namespace sample_clip
