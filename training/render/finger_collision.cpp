#include "finger_collision.h"

#include <algorithm>

namespace training::render {
namespace {

float segmentDistance(Vec3 p, Vec3 q, Vec3 r, Vec3 s) {
  const Vec3 u = q - p, v = s - r, w = p - r;
  const float a = dot(u, u), b = dot(u, v), c = dot(v, v), d = dot(u, w), e = dot(v, w);
  const float denominator = a * c - b * b;
  float x = denominator > 1e-9f ? std::clamp((b * e - c * d) / denominator, 0.0f, 1.0f) : 0.0f;
  float y = (b * x + e) / c;
  if (y < 0 || y > 1) {
    y = std::clamp(y, 0.0f, 1.0f);
    x = std::clamp((b * y - d) / a, 0.0f, 1.0f);
  }
  return length(w + u * x - v * y);
}

}  // namespace

float penetration(const HandRig& rig, const HandPose& pose, int contact) {
  ArmTransforms t;
  rig.pose({Rigid{}, 0, 0, 0, 0, pose}, t);
  Vec3 knuckle[kFingers][4];
  for (int f = 0; f < kFingers; ++f) {
    for (int j = 0; j < 3; ++j) {
      const auto bone = static_cast<size_t>(fingerBone(f, j));
      knuckle[f][j] = t[bone](rig.head[bone]);
      knuckle[f][j + 1] = t[bone](rig.tail[bone]);
    }
  }
  float sum = 0;
  for (int f = 0; f < kFingers; ++f) {
    for (int g = f + 1; g < kFingers; ++g) {
      for (int i = f == 0 ? 1 : 0; i < 3; ++i) {
        for (int j = i == 0 ? 1 : 0; j < 3; ++j) {
          const float softness = f == 0 && g == contact  ? 0.45f
                                 : f == 0 && contact > 0 ? 0.7f
                                                         : 0.88f;
          const float apart = softness * (rig.radius[f][i] + rig.radius[g][j]);
          sum += std::max(0.0f, apart - segmentDistance(knuckle[f][i], knuckle[f][i + 1],
                                                        knuckle[g][j], knuckle[g][j + 1]));
        }
      }
    }
  }
  for (int m = 0; m < 4; ++m) {
    const auto bone = static_cast<size_t>(kMetacarpal + m);
    const Vec3 root = t[bone](rig.head[bone]), end = t[bone](rig.tail[bone]);
    for (int f = 0; f < kFingers; ++f) {
      const Vec3 stop = f == 0 ? end : mix(root, end, 0.85f);
      for (int j = 1; j < 3; ++j) {
        sum += std::max(0.0f, rig.radius[f][j] + 0.04f -
                                  segmentDistance(knuckle[f][j], knuckle[f][j + 1], root, stop));
      }
    }
  }
  return sum;
}

}  // namespace training::render
