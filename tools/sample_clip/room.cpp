#include "tools/sample_clip/room.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tools/sample_clip/performance.h"

namespace sample_clip {
namespace {

/// Components from 0 to 1.
struct Color {
  double r = 0;
  double g = 0;
  double b = 0;
};

Color shaded(Color color, double light) {
  return {color.r * light, color.g * light, color.b * light};
}

/// x and y in picture heights from the bottom left.
Color roomAt(double x, double y) {
  if (x > 1.15 && x < 1.62 && y > 0.5 && y < 0.93) {
    const bool frame = std::abs(x - 1.385) < 0.01 || x < 1.165 || x > 1.605 || y > 0.915;
    return frame ? Color{.93, .92, .9} : shaded({.75, .84, .93}, .8 + .2 * y);
  }
  if (x < 0.5 && std::abs(y - 0.62) < 0.012) return {.42, .3, .2};
  if (x > 0.08 && x < 0.4 && y > 0.632) {
    const double book = std::floor(x * 32);
    if (y < 0.74 + 0.02 * std::sin(5 * book)) {
      return {.35 + .3 * std::abs(std::sin(book)), .3 + .2 * std::abs(std::sin(2 * book)), .32};
    }
  }
  return shaded({.88, .84, .78}, 0.5 + 0.22 * x / kAspect + 0.1 * y);
}

std::uint8_t byte(double component) {
  return static_cast<std::uint8_t>(std::lround(255 * std::clamp(component, 0.0, 1.0)));
}

}  // namespace

pixels::Surface room(int width, int height) {
  constexpr int kSamples = 3;  // Each way.
  pixels::Surface picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      Color sum;
      for (int i = 0; i < kSamples * kSamples; ++i) {
        const int column = i % kSamples, row = i / kSamples;
        const double sampleX = (x + (column + 0.5) / kSamples) / height;
        const double sampleY = 1 - (y + (row + 0.5) / kSamples) / height;
        const Color color = shaded(roomAt(sampleX, sampleY), 1.0 / (kSamples * kSamples));
        sum = {sum.r + color.r, sum.g + color.g, sum.b + color.b};
      }
      std::uint8_t* pixel = picture.view().row(y) + 4 * static_cast<std::ptrdiff_t>(x);
      pixel[0] = byte(sum.b);
      pixel[1] = byte(sum.g);
      pixel[2] = byte(sum.r);
      pixel[3] = 255;
    }
  }
  return picture;
}

void putOver(const pixels::Surface& picture, pixels::Surface& ground) {
  for (int y = 0; y < ground.height(); ++y) {
    const std::uint8_t* from = picture.row(y);
    std::uint8_t* to = ground.view().row(y);
    for (int i = 0; i < 4 * ground.width(); ++i) {
      const int covered = from[i - i % 4 + 3];
      to[i] = static_cast<std::uint8_t>(std::min(255, from[i] + to[i] * (255 - covered) / 255));
    }
  }
}

}  // namespace sample_clip
