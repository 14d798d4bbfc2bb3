#pragma once

#include "person.h"
#include "surface.h"

namespace training::render {

/// Colours and textures of one person.
struct Look {
  explicit Look(Random& random);

  /// Reflectance (linear) and gloss of a point. `p`: interpolated surface values.
  struct Point {
    Vec3 colour;
    float gloss = 0;
    float bump = 0;  ///< How uneven the surface is; scales the noise on the normal.
  };
  Point at(const SurfacePoint& p, Material material) const;

  /// Whether clothes reach as far as `arm`, near `place`.
  bool isClothed(float arm, Vec3 place) const {
    return arm <= sleeveEnd + 0.02f * noiseAt(place * 3.0f);
  }

  float darkness = 0;   ///< Of the skin, 0..1.
  float sleeveEnd = 0;  ///< Arm coordinate where the sleeves end.
  float looseness = 0;  ///< Decimetres from skin to cloth.
  float gloss = 0, glossExponent = 10;
  bool hasLongHair = false, isBald = false;
  Vec3 place;  ///< Where in the noise this person's textures lie.

 private:
  Point skinAt(const SurfacePoint& p) const;
  Point nailAt(const SurfacePoint& p, Point skin) const;
  Vec3 faceAt(Vec3 p, Vec3 colour) const;

  Vec3 skin_, nail_, cloth_, secondCloth_, trousers_, hair_, band_, ring_, polish_;
  float palmLightness_ = 0, redness_ = 0, creases_ = 0, mottling_ = 0, fineMottling_ = 0;
  float mottlingScale_ = 8, fineScale_ = 40, veins_ = 0;
  int clothPattern_ = 0;
  float clothScale_ = 1, clothNoise_ = 0.1f;
  float bandFrom_ = 9, bandTo_ = 9;
  int ringFinger_ = -1;
  bool isPolished_ = false;
};

Vec3 linear(Vec3 srgb);
Vec3 randomColour(Random& random);
/// sRGB skin colours of people, light to dark.
Vec3 randomSkin(Random& random);

}  // namespace training::render
