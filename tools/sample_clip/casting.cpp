#include "tools/sample_clip/casting.h"

#include "training/render/random.h"

namespace sample_clip {

using namespace training::render;

Casting randomCasting(std::uint64_t seed) {
  Random random(seed * 7919 + 5);
  Casting casting{.seed = seed};
  casting.focalLength = random.between(0.85f, 1.35f);
  // From a laptop on the knees to a camera on top of a large screen, turned to the person.
  casting.cameraAbove = random.between(-1.5f, 2.5f);
  casting.cameraDown = 0.08f * casting.cameraAbove + random.normal(radians(3));
  casting.cameraLeft = random.normal(radians(5));
  casting.cameraRoll = random.normal(radians(2));
  casting.handsInFront = random.between(2.4f, 3.6f);
  casting.palm = normalized({random.between(-0.9f, 0.15f), random.between(-0.35f, 0.25f), 1});
  casting.up = normalized({random.between(-0.45f, 0.2f), 1, random.between(-0.1f, 0.5f)});
  casting.curl = random.unit();
  casting.otherWrist = {random.between(0.2f, 1.8f), random.between(-1.5f, 0.4f),
                        random.between(1.4f, 2.6f)};
  casting.otherPalm = normalized({random.normal(0.2f), random.normal(0.15f), 1});
  casting.idlePalm = normalized({-1, random.between(-0.5f, 0.1f), random.between(-0.5f, 0.6f)});
  return casting;
}

}  // namespace sample_clip
