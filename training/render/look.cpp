#include "look.h"

namespace training::render {
namespace {

Vec3 fromHue(float hue, float saturation, float value) {
  const auto channel = [&](float shift) {
    const float k = std::fmod(hue * 6 + shift, 6.0f);
    return value * (1 - saturation * std::clamp(std::min(k, 4 - k), 0.0f, 1.0f));
  };
  return {channel(5), channel(3), channel(1)};
}

Vec3 clamped(Vec3 c) {
  return {std::clamp(c.x, 0.0f, 1.0f), std::clamp(c.y, 0.0f, 1.0f), std::clamp(c.z, 0.0f, 1.0f)};
}

float bell(float x) {
  return std::exp(-x * x);
}

}  // namespace

Vec3 linear(Vec3 c) {
  return {std::pow(c.x, 2.2f), std::pow(c.y, 2.2f), std::pow(c.z, 2.2f)};
}

Vec3 randomColour(Random& random) {
  if (random.chance(0.4f)) {
    const float grey = random.unit();
    return clamped({grey * (1 + random.normal(0.05f)), grey, grey * (1 + random.normal(0.06f))});
  }
  return fromHue(random.unit(), random.between(0.05f, 0.95f) * random.between(0.3f, 1),
                 random.between(0.05f, 1));
}

Vec3 randomSkin(Random& random) {
  static constexpr Vec3 kTones[] = {{250, 222, 205}, {240, 200, 175}, {224, 178, 145},
                                    {200, 148, 112}, {160, 108, 76},  {112, 72, 50},
                                    {66, 44, 34}};
  const float t = random.between(0, 6);
  const int k = std::min(5, static_cast<int>(t));
  const Vec3 c = mix(kTones[k], kTones[k + 1], t - static_cast<float>(k)) * (1.0f / 255);
  return clamped(
      c * Vec3{1 + random.normal(0.03f), 1 + random.normal(0.025f), 1 + random.normal(0.05f)});
}

Look::Look(Random& random) {
  const Vec3 skin = randomSkin(random);
  skin_ = linear(skin);
  darkness = 1 - (skin.x + skin.y + skin.z) / 3;
  nail_ = linear(clamped({skin.x * 1.04f + 0.03f, skin.y * 0.95f + 0.02f, skin.z * 0.97f + 0.04f}));
  place = random.offset(50);
  gloss = random.between(0.02f, 0.22f);
  glossExponent = random.between(6, 35);
  palmLightness_ = random.between(0.05f, 0.35f) * darkness * 3.2f + random.between(0, 0.12f);
  redness_ = random.between(0, 0.28f);
  creases_ = random.between(0, 0.5f);
  mottling_ = random.between(0.02f, 0.16f);
  fineMottling_ = random.between(0, 0.12f);
  mottlingScale_ = random.between(5, 12);
  fineScale_ = random.between(28, 60);
  veins_ = random.chance(0.4f) ? random.between(0, 0.15f) : 0;
  isPolished_ = random.chance(0.2f);
  polish_ =
      linear(random.chance(0.5f) ? fromHue(random.between(0.92f, 1.02f),
                                           random.between(0.5f, 0.95f), random.between(0.3f, 0.9f))
                                 : randomColour(random));
  const float sleeve = random.unit();
  sleeveEnd = sleeve < 0.5f   ? random.between(1.7f, 2.02f)
              : sleeve < 0.8f ? random.between(0.5f, 1.7f)
                              : random.between(0.1f, 0.5f);
  looseness = random.between(0.02f, 0.15f);
  cloth_ = linear(randomColour(random));
  secondCloth_ = linear(randomColour(random));
  trousers_ = linear(randomColour(random));
  clothPattern_ = random.below(6);
  clothScale_ = random.between(2, 14);
  clothNoise_ = random.between(0.05f, 0.3f);
  hair_ =
      linear(random.chance(0.85f) ? Vec3{random.between(0.03f, 0.5f), random.between(0.02f, 0.35f),
                                         random.between(0.02f, 0.2f)}
                                  : randomColour(random));
  hasLongHair = random.chance(0.5f);
  isBald = random.chance(0.08f);
  if (random.chance(0.22f)) {  // Watch or bracelet.
    bandFrom_ = random.between(1.78f, 1.93f);
    bandTo_ = bandFrom_ + random.between(0.02f, 0.09f);
    band_ = linear(randomColour(random));
  }
  if (random.chance(0.15f)) ringFinger_ = 1 + random.below(4);
  ring_ = random.chance(0.7f) ? Vec3{0.8f, 0.6f, 0.25f} : Vec3{0.7f, 0.7f, 0.72f};
}

Look::Point Look::nailAt(const SurfacePoint& p, Point skin) const {
  const float along = (p.nailAlong - 0.78f) / 0.30f, across = p.nailAcross / 0.72f;
  const float rim = std::pow(std::abs(along), 3.0f) + std::pow(std::abs(across), 3.0f);
  const float top = smoothStep(0.25f, 0.4f, p.nailUp);
  const float inside = smoothStep(1.08f, 0.94f, rim) * top;
  Vec3 nail = isPolished_ ? polish_ : nail_;
  if (!isPolished_ && along > 0.72f) nail = mix(nail, {0.8f, 0.75f, 0.68f}, 0.6f);
  skin.colour = mix(skin.colour, nail, inside) * (1 - 0.2f * bell((rim - 1) * 5) * top);
  skin.gloss += inside * 0.2f;
  return skin;
}

Look::Point Look::skinAt(const SurfacePoint& p) const {
  const float coarse = noiseAt(p.place * mottlingScale_ + place);
  Point point{
      skin_ * (1 + mottling_ * coarse + fineMottling_ * noiseAt(p.place * fineScale_ + place)),
      gloss, 0.08f};
  if (p.arm < 1.8f) return point;
  const float palmar = smoothStep(-0.2f, 0.6f, p.palmar) * smoothStep(1.8f, 2.05f, p.arm);
  point.colour = mix(point.colour, point.colour * 1.15f + Vec3{0.10f, 0.06f, 0.045f},
                     std::min(1.0f, palmar * palmLightness_));
  float red = 0;
  if (p.finger >= 0) {
    red += 0.8f * smoothStep(2.4f, 3.1f, p.alongFinger);
    for (int j = p.finger == 0 ? 1 : 0; j < 3; ++j) {
      const float d = p.alongFinger - static_cast<float>(j);
      red += bell(d * 6.3f) * (p.palmar < 0 ? 0.6f : 0.2f);
      const float crease =
          p.palmar > 0.1f ? 0.55f * bell(d * (j == 0 ? 22.0f : 39.0f))
                          : 0.3f * bell(d * 9.5f) * (0.5f + 0.5f * std::sin(d * 90 + 2 * coarse));
      point.colour = point.colour * (1 - creases_ * crease);
    }
    if (p.finger == ringFinger_ && p.alongFinger > 0.42f && p.alongFinger < 0.58f)
      return {ring_, 0.9f, 0};
  } else {
    red += 0.25f * smoothStep(0.2f, 1, p.palmar) * palmar;
    const float line = noiseAt(p.place * 3.2f + place);
    if (p.palmar > 0.3f && p.arm > 2)
      point.colour = point.colour * (1 - 0.35f * creases_ * bell(line * 16));
    if (p.palmar < -0.2f) point.colour = point.colour * (1 - veins_ * bell(line * 6));
  }
  point.colour = point.colour * Vec3{1, 1 - 0.45f * redness_ * red, 1 - 0.4f * redness_ * red};
  return p.nailAlong > -5 && p.nailUp > 0.25f ? nailAt(p, point) : point;
}

Vec3 Look::faceAt(Vec3 p, Vec3 colour) const {
  if (p.y < 6.6f) return colour;
  const float beside = std::abs(p.x);
  if (!isBald && p.y > 7.35f) {  // Short hair painted on the skull.
    const float line = p.y + 0.25f * noiseAt(p * 5.0f + place) - 0.55f * std::max(0.0f, p.z - 0.3f);
    if (line > 7.55f && !(p.z > 0.95f && p.y < 8.0f))
      return hair_ * (1 + 0.4f * noiseAt(p * 14.0f));
  }
  if (p.z > 1.05f && beside < 0.28f && p.y > 6.72f && p.y < 6.86f)
    return colour * Vec3{0.85f, 0.6f, 0.6f};
  if (p.z > 1.0f && p.y > 7.5f && p.y < 7.58f && beside > 0.15f && beside < 0.5f)
    return hair_ * 0.7f;
  return colour;
}

Look::Point Look::at(const SurfacePoint& p, Material material) const {
  switch (material) {
    case Material::clothes: {
      float share = 0;
      switch (clothPattern_) {
        case 1:
          share = std::sin(p.place.y * clothScale_ * 2) > 0 ? 1.0f : 0.0f;
          break;
        case 2:
          share = noiseAt(p.place * (0.4f * clothScale_) + place) > 0.1f ? 1.0f : 0.0f;
          break;
        case 3:
          share = 0.5f + 0.5f * std::sin((p.place.x + p.place.y) * clothScale_);
          break;
        case 4:
          share = std::sin(p.place.y * clothScale_ * 2) * std::sin(p.place.x * clothScale_ * 2) > 0
                      ? 1.0f
                      : 0.0f;
          break;
        default:
          break;
      }
      Vec3 colour = p.place.y < 0.9f ? trousers_ : mix(cloth_, secondCloth_, share);
      colour = colour * (1 + clothNoise_ * noiseAt(p.place * 7.0f + place) +
                         0.6f * clothNoise_ * noiseAt(p.place * 40.0f));
      if (p.arm > sleeveEnd - 0.03f) colour = colour * 0.8f;
      return {colour, 0.2f * gloss, 0.4f};
    }
    case Material::hair:
      return {hair_ * (1 + 0.5f * noiseAt(p.place * 10.0f)), gloss, 0.2f};
    case Material::eye: {
      const float toPupil = std::hypot(std::abs(p.place.x) - 0.31f, p.place.y - 7.30f);
      return {toPupil < 0.09f ? Vec3{0.03f, 0.02f, 0.02f} : Vec3{0.6f, 0.6f, 0.6f}, 0.5f, 0};
    }
    case Material::skin:
      break;
  }
  if (p.arm > bandFrom_ && p.arm < bandTo_) return {band_, 0.4f, 0};
  Point point = skinAt(p);
  if (p.arm < 0) point.colour = faceAt(p.place, point.colour);
  return point;
}

}  // namespace training::render
