#pragma once

#include "canvas.h"
#include "look.h"

namespace training::render {

/// Lights of a room, in the camera's axes, with the key light's shadows.
class Lighting {
 public:
  explicit Lighting(Random& random);

  /// Renders the shadow map of a mesh around `middle`, `reach` decimetres to each side.
  void castShadows(const std::vector<Vec3>& vertices, const std::vector<Triangle>& triangles,
                   Vec3 middle, float reach);

  /// Light that leaves a point towards the camera. `openness`: 1 free .. 0 enclosed.
  Vec3 shade(const Look::Point& point, Vec3 place, Vec3 normal, float openness, float glossExponent,
             bool isSkin) const;

  float occlusionStrength() const { return occlusionStrength_; }

 private:
  float shadowAt(Vec3 place, Vec3 normal) const;

  static constexpr int kMapSize = 224;
  struct Light {
    Vec3 towards, colour;
  };
  Light lights_[3];
  int count_ = 1;
  Vec3 ambient_, ambientTilt_, scatter_;
  float wrap_ = 0.2f, shadowStrength_ = 1, occlusionStrength_ = 1;
  bool hasShadows_ = false;
  Rigid toMap_;
  float mapScale_ = 1;
  Canvas map_{kMapSize, kMapSize};
};

}  // namespace training::render
