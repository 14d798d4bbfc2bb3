#pragma once

#include "camera.h"
#include "look.h"
#include "record.h"

namespace training::render {

constexpr int kCropSize = 160;                        ///< Pixels.
constexpr float kCropMargin = 1.95f;                  ///< Crop side per hand size.
constexpr int kSceneWidth = 256, kSceneHeight = 192;  ///< Pixels.

/// Takes pictures of random people.
class Studio {
 public:
  explicit Studio(const Human& human) : human_(human), surface_(surfaceOf(human)) {}

  /// One hand, upright and large.
  Record crop(Occasion occasion, Random& random) const;
  /// A person before a webcam.
  Record scene(Random& random) const;
  /// `person` as `camera` sees them; `random` lights the room. The camera's samples are twice as
  /// many each way as the pixels. `focus`: the middle of the part, `shadowReach` decimetres to each
  /// side, that throws shadows.
  Record take(const Person& person, const Camera& camera, const Look& look, int width, int height,
              Vec3 focus, float shadowReach, Random& random) const;

 private:
  void label(const Person& person, const Camera& camera, const Canvas& canvas, size_t side,
             HandLabel& hand) const;

  const Human& human_;
  std::vector<SurfacePoint> surface_;
};

}  // namespace training::render
