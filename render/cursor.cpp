#include "render/cursor.h"

#include <algorithm>
#include <cmath>

#include "strokes/palette.h"

namespace render {

namespace {

// Logical points; on purpose the same on every canvas, so that the cursor is never lost.
constexpr double kSmallestRadius = 8;
constexpr double kGap = 6;
constexpr double kDarkRing = 4, kDarkAlpha = 0.6;
constexpr double kLightRing = 2, kLightAlpha = 0.95;

double radiusPx(const CursorState& cursor, const CanvasMapping& mapping) {
  return (std::max(cursor.width * mapping.unit * 0.5, kSmallestRadius) + kGap) *
         mapping.deviceScale;
}

/// A pixel on its way through the cursor's layers: premultiplied, 0 to 1.
struct Mix {
  double b, g, r, a;

  void over(double blue, double green, double red, double share) {
    b += (blue - b) * share;
    g += (green - g) * share;
    r += (red - r) * share;
    a += (1 - a) * share;
  }
};

double ringShare(double distance, double radius, double width) {
  return std::clamp(std::min(width, width / 2 - std::abs(distance - radius) + 0.5), 0.0, 1.0);
}

std::uint8_t byteOf(double value) {
  return static_cast<std::uint8_t>(value * 255 + 0.5);
}

}  // namespace

PixelRect cursorBounds(const CursorState& cursor, const CanvasMapping& mapping, int width,
                       int height) {
  const double centreX = cursor.x * mapping.width, centreY = cursor.y * mapping.height;
  const double outer = radiusPx(cursor, mapping) + kDarkRing * mapping.deviceScale / 2 + 1;
  if (!std::isfinite(centreX) || !std::isfinite(centreY) || !std::isfinite(outer)) return {};
  const auto within = [](double v, int end) {
    return static_cast<int>(std::clamp(v, 0.0, static_cast<double>(end)));
  };
  return {within(centreX - outer, width), within(centreY - outer, height),
          within(centreX + outer + 1, width), within(centreY + outer + 1, height)};
}

void drawCursor(const CursorState& cursor, const CanvasMapping& mapping,
                const pixels::SurfaceView& pixels) {
  const PixelRect bounds = cursorBounds(cursor, mapping, pixels.width, pixels.height);
  const double centreX = cursor.x * mapping.width, centreY = cursor.y * mapping.height;
  const double radius = radiusPx(cursor, mapping);
  const double dark = kDarkRing * mapping.deviceScale, light = kLightRing * mapping.deviceScale;
  const strokes::PaletteColor& color = strokes::Palette::colorAt(cursor.colorIndex);
  for (int y = bounds.top; y < bounds.bottom; ++y) {
    for (int x = bounds.left; x < bounds.right; ++x) {
      const double distance = std::hypot(x + 0.5 - centreX, y + 0.5 - centreY);
      const double disc = cursor.down ? std::clamp(radius - distance + 0.5, 0.0, 1.0) : 0;
      const double darkShare = kDarkAlpha * ringShare(distance, radius, dark);
      const double lightShare = kLightAlpha * ringShare(distance, radius, light);
      if (disc <= 0 && darkShare <= 0 && lightShare <= 0) continue;
      std::uint8_t* p = pixels.row(y) + 4 * x;
      Mix mix{p[0] / 255.0, p[1] / 255.0, p[2] / 255.0, p[3] / 255.0};
      mix.over(color.b, color.g, color.r, disc);
      mix.over(0, 0, 0, darkShare);
      mix.over(1, 1, 1, lightShare);
      p[0] = byteOf(mix.b), p[1] = byteOf(mix.g), p[2] = byteOf(mix.r), p[3] = byteOf(mix.a);
    }
  }
}

}  // namespace render
