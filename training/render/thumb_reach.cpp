#include "thumb_reach.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace training::render {
namespace {

/// An angle that the search may change, with its anatomical limits in degrees.
struct Free {
  float* angle;
  float low, high, start;
};

}  // namespace

float reach(const HandRig& rig, HandPose& pose, const ThumbTarget& target) {
  std::vector<Free> free = {{&pose.thumbFlex, -32, 58, 0},
                            {&pose.thumbSide, -38, 45, 0},
                            {&pose.thumbTwist, -25, 55, 0},
                            {&pose.flex[0][1], -10, 62, 0},
                            {&pose.flex[0][2], -20, 82, 0}};
  const int f = target.finger;
  if (f > 0) {
    free.push_back({&pose.flex[f][0], -20, 92, 0});
    free.push_back({&pose.flex[f][1], 0, 112, 0});
    free.push_back({&pose.flex[f][2], 0, 80, 0});
    free.push_back({&pose.spread[f], -18, 18, 0});
  }
  for (Free& x : free) x.start = *x.angle;
  ArmTransforms t;
  rig.pose({Rigid{}, 0, 0, 0, 0, pose}, t);
  const Vec3 thumbPad = rig.pad(0), fingerPad = f > 0 ? rig.pad(f) : target.place;
  const auto otherBone = static_cast<size_t>(f > 0 ? fingerBone(f, 2) : target.bone);
  const Vec3 otherNormal = f > 0 ? rig.padNormal[f][2] : target.normal;
  const auto distance = [&] {
    rig.poseFinger(pose, 0, t);
    if (f > 0) rig.poseFinger(pose, f, t);
    return length(t[fingerBone(0, 2)](thumbPad) - t[otherBone](fingerPad));
  };
  const auto cost = [&] {
    const float miss = distance() - target.gap;
    const float facing =
        1 + dot(t[fingerBone(0, 2)].turned(rig.padNormal[0][2]), t[otherBone].turned(otherNormal));
    float sum = 60 * miss * miss + (target.gap > 0.3f ? 0.02f : 0.12f) * facing * facing;
    for (const Free& x : free) sum += 0.03f * (*x.angle - x.start) * (*x.angle - x.start);
    return sum;
  };
  // Coordinate search with shrinking steps.
  float best = cost();
  for (float step = 0.3f; step > 0.01f; step *= 0.6f) {
    for (int sweep = 0; sweep < 2; ++sweep) {
      for (Free& x : free) {
        for (const float way : {step, -step}) {
          const float before = *x.angle;
          *x.angle = std::clamp(before + way, radians(x.low), radians(x.high));
          const float now = cost();
          if (now < best) {
            best = now;
            break;
          }
          *x.angle = before;
        }
      }
    }
  }
  return std::abs(distance() - target.gap);
}

ThumbTarget onFinger(const HandRig& rig, int finger, int joint, float share) {
  const auto bone = static_cast<size_t>(fingerBone(finger, joint));
  const Vec3 out = -rig.padNormal[finger][joint];
  return {0, 0, static_cast<int>(bone),
          mix(rig.head[bone], rig.tail[bone], share) + out * rig.radius[finger][joint], out};
}

}  // namespace training::render
