#include "tools/sample_clip/webcam.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace sample_clip {
namespace {

using training::render::Random;

constexpr std::size_t kNoise = 1 << 20;

std::uint8_t byte(double value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

/// Each pixel takes in half of its neighbours, first across and then down.
void soften(pixels::Surface& picture) {
  const auto mean = [](int before, int here, int after) {
    return static_cast<std::uint8_t>((before + 2 * here + after + 2) / 4);
  };
  std::vector<std::uint8_t> line;
  const std::ptrdiff_t bytes = 4 * static_cast<std::ptrdiff_t>(picture.width());
  for (int y = 0; y < picture.height(); ++y) {
    std::uint8_t* const row = picture.view().row(y);
    line.assign(row, row + bytes);
    for (std::ptrdiff_t i = 4; i < bytes - 4; ++i) row[i] = mean(line[i - 4], line[i], line[i + 4]);
  }
  std::vector<std::uint8_t> above(picture.row(0), picture.row(0) + bytes);
  for (int y = 1; y + 1 < picture.height(); ++y) {
    std::uint8_t* const row = picture.view().row(y);
    const std::uint8_t* const below = picture.row(y + 1);
    line.assign(row, row + bytes);
    for (std::ptrdiff_t i = 0; i < bytes; ++i) row[i] = mean(above[i], line[i], below[i]);
    above.swap(line);
  }
}

}  // namespace

Webcam::Webcam(Random& random) : softness_(random.below(3)), noise_(kNoise) {
  const double gamma = std::exp(random.normal(0.2f));
  const double contrast = std::exp(random.normal(0.1f));
  for (auto& curve : curves_) {
    const double gain = std::exp(random.normal(0.06f));
    for (std::size_t i = 0; i < curve.size(); ++i) {
      const double developed = std::pow(static_cast<double>(i) / 255, gamma);
      curve[i] = byte(255 * gain * (contrast * (developed - 0.5) + 0.5));
    }
  }
  const float strength = random.scale(1.2f, 6);
  for (std::int8_t& value : noise_) {
    value = static_cast<std::int8_t>(std::clamp(random.normal(strength), -60.0f, 60.0f));
  }
}

void Webcam::develop(pixels::Surface& picture, int frame) const {
  for (int i = 0; i < softness_; ++i) soften(picture);
  Random random(static_cast<std::uint64_t>(frame) + 77);
  for (int y = 0; y < picture.height(); ++y) {
    std::uint8_t* const row = picture.view().row(y);
    const auto start = static_cast<std::size_t>(random.below(static_cast<int>(kNoise)));
    for (std::size_t i = 0; i < 4 * static_cast<std::size_t>(picture.width()); ++i) {
      if (i % 4 == 3) continue;
      const int noisy = curves_[i % 4][row[i]] + noise_[(start + i) % kNoise];
      row[i] = static_cast<std::uint8_t>(std::clamp(noisy, 0, 255));
    }
  }
}

}  // namespace sample_clip
