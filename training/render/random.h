#pragma once

#include <cmath>
#include <cstdint>

#include "vec.h"

namespace training::render {

/// A small seeded generator: the same seed gives the same picture everywhere.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {
    state_ = next() ^ 0xD1B54A32D192ED03ull;  // Or neighbouring seeds would share their sequence.
    state_ = next();
  }

  float unit() { return static_cast<float>(next() >> 40) * (1.0f / 16777216); }
  float between(float low, float high) { return low + (high - low) * unit(); }
  /// Uniform in the logarithm.
  float scale(float low, float high) { return std::exp(between(std::log(low), std::log(high))); }
  /// Normal with mean 0.
  float normal(float deviation) {
    const float a = std::max(unit(), 1e-7f);
    return deviation * std::sqrt(-2 * std::log(a)) * std::cos(6.2831853f * unit());
  }
  int below(int count) { return static_cast<int>((next() >> 33) % static_cast<uint64_t>(count)); }
  bool chance(float probability) { return unit() < probability; }
  Vec3 direction() { return normalized({normal(1), normal(1), normal(1)}); }
  Vec3 offset(float reach) {
    return {between(-reach, reach), between(-reach, reach), between(-reach, reach)};
  }

 private:
  uint64_t next() {  // splitmix64
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }

  uint64_t state_;
};

/// Smooth noise in -1..1 that depends on the place only; wavelength about 1.
float noiseAt(Vec3 place);

}  // namespace training::render
