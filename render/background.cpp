#include "render/background.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "render/picture_rows.h"

namespace render {

namespace {

// What the canvas shows while there is no camera picture: a dark grey.
constexpr std::uint8_t kNoPicture[4] = {26, 20, 20, 255};
constexpr std::uint8_t kBlack[4] = {0, 0, 0, 255};
constexpr std::uint8_t kWhite[4] = {255, 255, 255, 255};

/// How much of column or row `i` a canvas of `length` pixels covers.
double shareOf(int i, double length) {
  return std::clamp(length - i, 0.0, 1.0);
}

/// Lays `color` over the pixel; `share`: 0 to 1.
void layOver(const std::uint8_t* color, double share, std::uint8_t* pixel) {
  for (int c = 0; c < 4; ++c)
    pixel[c] = static_cast<std::uint8_t>(pixel[c] + (color[c] - pixel[c]) * share + 0.5);
}

/// Calls paint(x, y) with a whole picture's pixels: plainly where the canvas covers them, mixed
/// along a fractional right or bottom edge.
class Canvas {
 public:
  Canvas(const CanvasMapping& mapping, const pixels::SurfaceView& pixels)
      : mapping_(mapping),
        pixels_(pixels),
        width_(extent(mapping.width, pixels.width)),
        height_(extent(mapping.height, pixels.height)),
        wholeWidth_(std::min(width_, static_cast<int>(mapping.width))),
        wholeHeight_(std::min(height_, static_cast<int>(mapping.height))) {}

  /// Pixels that the canvas touches.
  int width() const { return width_; }
  int height() const { return height_; }

  /// Replaces row `y` of the canvas by `source`, BGRA, opaque.
  void setRow(int y, const std::uint8_t* source) const {
    std::uint8_t* row = pixels_.row(y);
    const bool isWhole = y < wholeHeight_;
    if (isWhole) std::memcpy(row, source, 4 * static_cast<std::size_t>(wholeWidth_));
    const double rowShare = shareOf(y, mapping_.height);
    for (int x = isWhole ? wholeWidth_ : 0; x < width_; ++x)
      layOver(source + 4 * x, rowShare * shareOf(x, mapping_.width), row + 4 * x);
  }

 private:
  static int extent(double length, int most) {
    return static_cast<int>(std::clamp(std::ceil(length), 0.0, static_cast<double>(most)));
  }

  CanvasMapping mapping_;
  pixels::SurfaceView pixels_;
  int width_;
  int height_;
  int wholeWidth_;
  int wholeHeight_;
};

void fill(const std::uint8_t (&color)[4], const Canvas& canvas) {
  std::vector<std::uint8_t> row(4 * static_cast<std::size_t>(canvas.width()));
  for (std::size_t i = 0; i < row.size(); i += 4) std::memcpy(row.data() + i, color, 4);
  for (int y = 0; y < canvas.height(); ++y) canvas.setRow(y, row.data());
}

void drawPicture(const pixels::Image& picture, double dim, const CanvasMapping& mapping,
                 const Canvas& canvas) {
  if (canvas.width() < 1 || canvas.height() < 1) return;
  PictureRows rows(picture, mapping.width, mapping.height, dim, canvas.width(), canvas.height());
  std::vector<std::uint8_t> row(4 * static_cast<std::size_t>(canvas.width()));
  for (int y = 0; y < canvas.height(); ++y) {
    rows.fetch(y, row.data());
    canvas.setRow(y, row.data());
  }
}

}  // namespace

void drawBackground(const RenderScene& scene, const CanvasMapping& mapping,
                    const pixels::SurfaceView& pixels) {
  const Canvas canvas(mapping, pixels);
  switch (scene.background) {
    case CanvasBackground::camera:
      if (scene.frame) {
        const double dim = scene.dim > 0 ? std::min(scene.dim, 1.0) : 0.0;
        drawPicture(*scene.frame, dim, mapping, canvas);
      } else {
        fill(kNoPicture, canvas);
      }
      break;
    case CanvasBackground::black:
      fill(kBlack, canvas);
      break;
    case CanvasBackground::white:
      fill(kWhite, canvas);
      break;
    case CanvasBackground::transparent:
      break;
  }
}

}  // namespace render
