#include "scenes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace bench {

namespace {

/// Small numbers that look random; the same on every machine.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : state_(seed * 2654435761u + 1) {}

  /// 0 to 1.
  double next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_ / 4294967296.0;
  }
  double between(double low, double high) { return low + (high - low) * next(); }

 private:
  std::uint32_t state_;
};

strokes::Stroke wanderingStroke(int number, int points) {
  constexpr double kAspect = 16.0 / 9;
  // A stroke of 200 points is about one and a half canvas heights long.
  const double step = 1.5 / 200 * std::sqrt(200.0 / points);
  Dice dice(static_cast<std::uint32_t>(number) + 7);
  double x = dice.between(0.1, 0.9), y = dice.between(0.1, 0.9);
  double heading = dice.between(0, 6.28), turn = dice.between(-0.05, 0.05);
  double width = dice.between(6, 20), breadth = dice.between(0, 6.28);
  std::vector<strokes::StrokePoint> path;
  for (int i = 0; i < points; ++i) {
    breadth += 0.03;
    path.push_back({x, y, std::clamp(width + 6 * std::sin(breadth), 6.0, 24.0)});
    turn = std::clamp(turn + dice.between(-0.012, 0.012), -0.12, 0.12);
    heading += turn;
    // Near a border the hand turns back to the middle.
    const double home = std::atan2(0.5 - y, (0.5 - x) * kAspect);
    const double away = std::remainder(home - heading, 6.283185307179586);
    if (std::max(std::abs(x - 0.5), std::abs(y - 0.5)) > 0.42) heading += 0.2 * away;
    x += step * std::cos(heading) / kAspect;
    y += step * std::sin(heading);
  }
  return {{0, static_cast<std::uint64_t>(number) + 1},
          strokes::StrokePoints(std::move(path)),
          number,
          0};
}

}  // namespace

render::RenderScene painting(int strokes, int pointsPerStroke, bool glow) {
  render::RenderScene scene;
  scene.background = render::CanvasBackground::black;
  scene.dim = 0.35;
  scene.fadeSeconds = 6;
  scene.glow = glow;
  for (int i = 0; i < strokes; ++i) scene.strokes.push_back(wanderingStroke(i, pointsPerStroke));
  return scene;
}

pixels::Image cameraPicture() {
  constexpr int kWidth = 1280, kHeight = 720;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(4 * kWidth * kHeight);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      for (const int value : {x / 5, y / 3, (x ^ y) & 255, 255})
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
  }
  return pixels::Image::copyOf(bytes.data(), kWidth, kHeight, 4 * kWidth);
}

pixels::Image noisyPicture(int seed) {
  constexpr int kWidth = 1280, kHeight = 720;
  Dice dice(static_cast<std::uint32_t>(seed));
  std::vector<std::uint8_t> bytes(4u * kWidth * kHeight);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(256 * dice.next());
  return pixels::Image::copyOf(bytes.data(), kWidth, kHeight, 4 * kWidth);
}

}  // namespace bench
