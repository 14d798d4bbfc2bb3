#include "lighting.h"

namespace training::render {

Lighting::Lighting(Random& random) {
  count_ = 1 + random.below(3);
  for (int i = 0; i < count_; ++i) {
    Vec3 d = random.direction();
    if (random.chance(0.7f)) d.y = -std::abs(d.y);  // From above.
    if (random.chance(0.7f)) d.z = -std::abs(d.z);  // From the camera's side.
    const float strength = random.between(0.25f, 1.3f) / static_cast<float>(i + 1);
    lights_[i] = {
        d, Vec3{1 + random.normal(0.12f), 1 + random.normal(0.04f), 1 + random.normal(0.15f)} *
               strength};
  }
  const float ambient = random.between(0.12f, 0.75f);
  ambient_ =
      Vec3{1 + random.normal(0.1f), 1 + random.normal(0.04f), 1 + random.normal(0.12f)} * ambient;
  ambientTilt_ = {random.normal(0.25f), random.normal(0.25f) - 0.2f, random.normal(0.25f) - 0.2f};
  scatter_ = {random.between(0.05f, 0.25f), random.between(0, 0.08f), random.between(0, 0.05f)};
  wrap_ = random.between(0.05f, 0.5f);
  shadowStrength_ = random.between(0.4f, 1);
  occlusionStrength_ = random.between(0.4f, 1);
  hasShadows_ = random.chance(0.85f);
}

void Lighting::castShadows(const std::vector<Vec3>& vertices,
                           const std::vector<Triangle>& triangles, Vec3 middle, float reach) {
  if (!hasShadows_) return;
  const Vec3 z = -lights_[0].towards;
  const Vec3 x = normalized(cross(std::abs(z.y) < 0.9f ? Vec3{0, 1, 0} : Vec3{1, 0, 0}, z));
  toMap_.row[0] = x;
  toMap_.row[1] = cross(z, x);
  toMap_.row[2] = z;
  toMap_.shift = -toMap_.turned(middle);
  mapScale_ = 0.5f * kMapSize / reach;
  std::vector<Projected> seen(vertices.size());
  for (size_t v = 0; v < vertices.size(); ++v) {
    const Vec3 p = toMap_(vertices[v]);
    seen[v] = {p.x * mapScale_ + 0.5f * kMapSize, p.y * mapScale_ + 0.5f * kMapSize, p.z};
  }
  for (const Triangle& t : triangles) {
    if (t.material == Material::hair || t.material == Material::clothes) continue;
    map_.draw(0, seen[static_cast<size_t>(t.corner[0])], seen[static_cast<size_t>(t.corner[1])],
              seen[static_cast<size_t>(t.corner[2])], [](float, float, float) { return true; });
  }
}

float Lighting::shadowAt(Vec3 place, Vec3 normal) const {
  if (!hasShadows_) return 1;
  const Vec3 p = toMap_(place + normal * 0.012f);
  const int x = static_cast<int>(std::floor(p.x * mapScale_ + 0.5f * kMapSize));
  const int y = static_cast<int>(std::floor(p.y * mapScale_ + 0.5f * kMapSize));
  if (x < 1 || y < 1 || x > kMapSize - 2 || y > kMapSize - 2) return 1;
  const float bias = 0.03f + 0.8f / mapScale_;
  int dark = 0;
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) dark += map_.at(x + dx, y + dy).depth < p.z - bias ? 1 : 0;
  }
  return 1 - shadowStrength_ * static_cast<float>(dark) / 9;
}

Vec3 Lighting::shade(const Look::Point& point, Vec3 place, Vec3 normal, float openness,
                     float glossExponent, bool isSkin) const {
  const Vec3 view = normalized(-place);
  Vec3 light = ambient_ * ((1 + 0.5f * dot(normal, ambientTilt_)) * openness);
  float shine = 0;
  const float shadow = shadowAt(place, normal);
  for (int i = 0; i < count_; ++i) {
    const float facing = dot(normal, lights_[i].towards), lit = i == 0 ? shadow : 1.0f;
    const float wrapped = (facing + wrap_) / (1 + wrap_);
    if (wrapped > 0) light += lights_[i].colour * (wrapped * lit * (0.6f + 0.4f * openness));
    if (isSkin) {  // Light that wanders under the skin reddens the edge of the shadow.
      light += lights_[i].colour * scatter_ *
               (std::exp(-14 * (facing - 0.02f) * (facing - 0.02f)) * lit);
    }
    if (facing > 0) {
      const float halfway = std::max(0.0f, dot(normal, normalized(lights_[i].towards + view)));
      shine += std::pow(halfway, glossExponent) * facing * lit * lights_[i].colour.y;
    }
  }
  const float edge = std::pow(1 - std::max(0.0f, dot(normal, view)), 4.0f);
  return point.colour * light + Vec3{1, 1, 1} * (shine * point.gloss) + ambient_ * (0.12f * edge);
}

}  // namespace training::render
