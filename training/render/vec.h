#pragma once

#include <algorithm>
#include <cmath>

namespace training::render {

/// A point or direction; decimetres in space, or a linear colour.
struct Vec3 {
  float x = 0, y = 0, z = 0;

  Vec3 operator+(Vec3 o) const { return {x + o.x, y + o.y, z + o.z}; }
  Vec3 operator-(Vec3 o) const { return {x - o.x, y - o.y, z - o.z}; }
  Vec3 operator-() const { return {-x, -y, -z}; }
  Vec3 operator*(float s) const { return {x * s, y * s, z * s}; }
  Vec3 operator*(Vec3 o) const { return {x * o.x, y * o.y, z * o.z}; }
  Vec3& operator+=(Vec3 o) { return *this = *this + o; }
};

inline float dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a) {
  return std::sqrt(dot(a, a));
}
inline Vec3 normalized(Vec3 a) {
  const float l = length(a);
  return l > 1e-12f ? a * (1 / l) : Vec3{0, 0, 1};
}
inline Vec3 mix(Vec3 a, Vec3 b, float t) {
  return a * (1 - t) + b * t;
}
inline Vec3 mirrored(Vec3 a) {
  return {-a.x, a.y, a.z};
}
inline float smoothStep(float from, float to, float x) {
  const float t = std::clamp((x - from) / (to - from), 0.0f, 1.0f);
  return t * t * (3 - 2 * t);
}
constexpr float radians(float degrees) {
  return degrees * 0.017453292f;
}

/// A rotation followed by a translation.
struct Rigid {
  Vec3 row[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  Vec3 shift;

  Vec3 turned(Vec3 v) const { return {dot(row[0], v), dot(row[1], v), dot(row[2], v)}; }
  Vec3 turnedBack(Vec3 v) const { return row[0] * v.x + row[1] * v.y + row[2] * v.z; }
  Vec3 operator()(Vec3 v) const { return turned(v) + shift; }
  Rigid operator*(const Rigid& o) const;
};

/// The rotation about `axis` through the origin.
Rigid rotation(Vec3 axis, float angle);
/// The same rotation, about `pivot`.
Rigid about(Vec3 pivot, const Rigid& turn);
/// The shortest rotation that takes direction `from` to direction `to`.
Rigid aligning(Vec3 from, Vec3 to);
/// What `transform` is for the mirror image (x reversed) of its object.
Rigid mirrored(const Rigid& transform);

}  // namespace training::render
