#include "render/strip_painting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "render/paint_tile.h"

namespace render {
namespace {

constexpr int kSide = PaintTile::kSide;

/// The body's shares and the core's of a strip in a tile that is far from the canvas's corner.
struct Painted {
  std::vector<std::int16_t> body = std::vector<std::int16_t>(kSide * kSide);
  std::vector<std::int16_t> core = std::vector<std::int16_t>(kSide * kSide);
};

constexpr int kLeft = 57 * kSide, kTop = 31 * kSide;

Painted paint(const Strip& strip, bool isTile) {
  Painted painted;
  const CellMask mask{painted.body.data(), kSide, kLeft, kTop, kSide, kSide, kFull, isTile};
  paintPieces({&strip, 1}, 1, mask, painted.core.data());
  return painted;
}

/// From (x, y) in the tile on in direction `angle`; its curve leans by `tilt` at its ends.
Strip stripFrom(double x, double y, double angle, double length, double tilt, double half) {
  Strip strip{};
  const double alongX = std::cos(angle), alongY = std::sin(angle);
  strip.startX = static_cast<float>(kLeft + x);
  strip.startY = static_cast<float>(kTop + y);
  strip.endX = static_cast<float>(kLeft + x + length * alongX);
  strip.endY = static_cast<float>(kTop + y + length * alongY);
  strip.alongX = static_cast<float>(alongX);
  strip.alongY = static_cast<float>(alongY);
  strip.length = static_cast<float>(length);
  strip.tilt = static_cast<float>(tilt);
  strip.bend = static_cast<float>(tilt / length);
  strip.bodyHalf = static_cast<float>(half);
  strip.coreHalf = static_cast<float>(0.4 * half);
  strip.startExtra = strip.endExtra = 0.5f;
  return strip;
}

/// Whether the cell is so close to where the strip is cut off that rounding decides on which side.
bool isAtAnEnd(const Strip& strip, int x, int y) {
  const float qx = static_cast<float>(kLeft + x) - strip.startX;
  const float qy = static_cast<float>(kTop + y) - strip.startY;
  const float s = qx * strip.alongX + qy * strip.alongY;
  const float v = qy * strip.alongX - qx * strip.alongY, lean = v * strip.tilt;
  const float before = s + lean + strip.startExtra;
  const float beyond = strip.length - s + lean + strip.endExtra;
  return std::abs(before) < 0.1f || std::abs(beyond) < 0.1f;
}

/// In levels of 255, away from the ends.
double largestDifference(const Strip& strip) {
  const Painted inTile = paint(strip, true), elsewhere = paint(strip, false);
  int most = 0;
  for (int i = 0; i < kSide * kSide; ++i) {
    if (isAtAnEnd(strip, i % kSide, i / kSide)) continue;
    const auto place = static_cast<std::size_t>(i);
    most = std::max({most, std::abs(inTile.body[place] - elsewhere.body[place]),
                     std::abs(inTile.core[place] - elsewhere.core[place])});
  }
  return most * 255.0 / kFull;
}

TEST(StripPainting, InATileIsAsElsewhereButForAFewHundredthsOfAPixel) {
  for (const double length : {0.25, 2.0, 17.3, 48.0, 96.0}) {
    for (const double half : {0.5, 2.75, 6.5, 30.0, 64.0, 300.0}) {
      // As much as strips of this length and width are bent.
      const double tilt = std::min(0.07, 0.24 * length / (half + 2));
      for (int step = 0; step < 24; ++step) {
        const double angle = step * std::numbers::pi / 12;
        for (const double lean : {0.0, tilt, -tilt}) {
          // Here its border, and where it ends, lie in the tile.
          const double x = 31.8 - half * std::sin(angle), y = 30.6 + half * std::cos(angle);
          const Strip strip = stripFrom(x, y, angle, length, lean, half);
          EXPECT_LE(largestDifference(strip), 8)
              << length << " long, half " << half << " wide, angle " << angle << ", tilt " << lean;
        }
      }
    }
  }
}

}  // namespace
}  // namespace render
