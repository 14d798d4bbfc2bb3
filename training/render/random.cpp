#include "random.h"

namespace training::render {
namespace {

float lattice(int x, int y, int z) {
  uint32_t h = static_cast<uint32_t>(x) * 0x8DA6B343u + static_cast<uint32_t>(y) * 0xD8163841u +
               static_cast<uint32_t>(z) * 0xCB1AB31Fu;
  h ^= h >> 15;
  h *= 0x2C1B3C6Du;
  h ^= h >> 13;
  return static_cast<float>(h & 0xFFFFu) * (2.0f / 65535) - 1;
}

float fade(float t) {
  return t * t * (3 - 2 * t);
}

}  // namespace

float noiseAt(Vec3 p) {
  const float fx = std::floor(p.x), fy = std::floor(p.y), fz = std::floor(p.z);
  const int x = static_cast<int>(fx), y = static_cast<int>(fy), z = static_cast<int>(fz);
  const float u = fade(p.x - fx), v = fade(p.y - fy), w = fade(p.z - fz);
  const auto row = [&](int dy, int dz) {
    const float a = lattice(x, y + dy, z + dz), b = lattice(x + 1, y + dy, z + dz);
    return a + (b - a) * u;
  };
  const float near = row(0, 0) + (row(1, 0) - row(0, 0)) * v;
  const float far = row(0, 1) + (row(1, 1) - row(0, 1)) * v;
  return near + (far - near) * w;
}

}  // namespace training::render
