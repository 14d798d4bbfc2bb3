#pragma once

#include "canvas.h"
#include "person.h"

namespace training::render {

/// From space to the samples of a picture.
struct Camera {
  Rigid fromSpace;  ///< To the camera's axes: x right, y down, z forwards.
  /// Samples = column0 * X/Z + column1 * Y/Z + origin.
  float xx = 1, xy = 0, yx = 0, yy = 1, originX = 0, originY = 0;

  Projected project(Vec3 p) const {
    const float x = p.x / p.z, y = p.y / p.z;
    return {xx * x + xy * y + originX, yx * x + yy * y + originY, p.z};
  }
  /// Samples per decimetre at `depth`.
  float scaleAt(float depth) const { return std::hypot(xx, yx) / depth; }
};

/// A camera that shows one hand upright in the middle of a square of `samples`,
/// `margin` times as large as the hand. `fromFront`: how often it stands where a webcam stands.
Camera cameraForHand(const Person& person, size_t side, int samples, float margin, float fromFront,
                     Random& random);

/// A camera in front of a person, as on a screen or a desk.
Camera cameraForPerson(const Person& person, int width, int height, Random& random);

}  // namespace training::render
