#include "camera.h"

namespace training::render {
namespace {

/// Axes of a camera at `from` that looks to `to`.
Rigid lookingAt(Vec3 from, Vec3 to) {
  const Vec3 forwards = normalized(to - from);
  const Vec3 right =
      normalized(cross(forwards, std::abs(forwards.y) < 0.98f ? Vec3{0, 1, 0} : Vec3{0, 0, 1}));
  Rigid axes;
  axes.row[0] = right;
  axes.row[1] = cross(forwards, right);
  axes.row[2] = forwards;
  axes.shift = -axes.turned(from);
  return axes;
}

Rigid shaken(float degrees, Random& random) {
  return rotation({1, 0, 0}, radians(random.normal(degrees))) *
         rotation({0, 1, 0}, radians(random.normal(degrees)));
}

}  // namespace

Camera cameraForHand(const Person& person, size_t side, int samples, float margin, float fromFront,
                     Random& random) {
  const auto& joints = person.joints[side];
  const Vec3 middle = (joints[0] + joints[9]) * 0.5f;
  Vec3 direction = random.direction();
  if (random.chance(fromFront)) {
    direction = rotation({0, 1, 0}, radians(random.normal(28)))
                    .turned(rotation({1, 0, 0}, radians(random.normal(20))).turned({0, 0, 1}));
  }
  Camera camera;
  camera.fromSpace =
      shaken(9, random) * lookingAt(middle + direction * random.scale(2.6f, 14), middle);

  Projected seen[21];
  for (size_t i = 0; i < 21; ++i) seen[i] = camera.project(camera.fromSpace(joints[i]));
  const float angle =
      std::atan2(seen[9].y - seen[0].y, seen[9].x - seen[0].x) + radians(90) + random.normal(0.2f);
  const float c = std::cos(angle), s = std::sin(angle);
  float left = 1e9f, right = -1e9f, top = 1e9f, bottom = -1e9f;
  for (const Projected& p : seen) {
    const float x = c * p.x + s * p.y, y = -s * p.x + c * p.y;
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
  }
  const float knuckles = std::hypot(seen[9].x - seen[0].x, seen[9].y - seen[0].y);
  const float size = std::max(
      {right - left, bottom - top, 1.1f * knuckles, 0.6f * person.handSize / seen[9].depth});
  const float scale = static_cast<float>(samples) / (margin * size);
  camera.xx = c * scale;
  camera.xy = s * scale;
  camera.yx = -s * scale;
  camera.yy = c * scale;
  camera.originX = 0.5f * static_cast<float>(samples) - 0.5f * (left + right) * scale;
  camera.originY = 0.5f * static_cast<float>(samples) - 0.5f * (top + bottom) * scale;
  return camera;
}

Camera cameraForPerson(const Person& person, int width, int height, Random& random) {
  const float away = random.scale(4.5f, 15);
  const Vec3 from{random.normal(0.8f) + random.between(-1, 1),
                  person.shoulder.y + 1.2f + random.between(-1.8f, 1.2f), away};
  const Vec3 to{random.normal(0.05f) * away, person.shoulder.y + random.between(-0.8f, 1.6f), 0};
  Camera camera;
  camera.fromSpace = rotation({0, 0, 1}, radians(random.normal(4))) * lookingAt(from, to) *
                     rotation({0, 1, 0}, radians(random.normal(15)));
  const float fieldOfView = radians(random.between(48, 82));
  camera.xx = camera.yy = 0.5f * static_cast<float>(width) / std::tan(0.5f * fieldOfView);
  camera.originX = 0.5f * static_cast<float>(width);
  camera.originY = 0.5f * static_cast<float>(height);
  return camera;
}

}  // namespace training::render
