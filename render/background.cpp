#include "render/background.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace render {

namespace {

// What the canvas shows while there is no camera picture: a dark grey.
constexpr std::uint8_t kNoPicture[4] = {26, 20, 20, 255};
constexpr std::uint8_t kBlack[4] = {0, 0, 0, 255};
constexpr std::uint8_t kWhite[4] = {255, 255, 255, 255};

int extent(double length, int most) {
  return static_cast<int>(std::clamp(std::ceil(length), 0.0, static_cast<double>(most)));
}

/// How much of column or row `i` a canvas of `length` pixels covers.
double shareOf(int i, double length) {
  return std::clamp(length - i, 0.0, 1.0);
}

void mixOver(const std::uint8_t* color, double share, std::uint8_t* pixel) {
  for (int c = 0; c < 4; ++c)
    pixel[c] = static_cast<std::uint8_t>(pixel[c] + (color[c] - pixel[c]) * share + 0.5);
}

/// Of grounds that are one colour, as the camera's is without a picture; null: none is drawn.
const std::uint8_t* plainColor(const RenderScene& scene) {
  switch (scene.background) {
    case CanvasBackground::camera:
      return kNoPicture;
    case CanvasBackground::black:
      return kBlack;
    case CanvasBackground::white:
      return kWhite;
    case CanvasBackground::transparent:
      break;
  }
  return nullptr;
}

}  // namespace

void Background::show(const RenderScene& scene, const CanvasMapping& mapping,
                      const pixels::SurfaceView& pixels) {
  mapping_ = mapping;
  pixels_ = pixels;
  width_ = extent(mapping.width, pixels.width);
  height_ = extent(mapping.height, pixels.height);
  color_ = plainColor(scene);
  if (scene.background == CanvasBackground::transparent) width_ = height_ = 0;
  if (scene.background != CanvasBackground::camera || !scene.frame || width_ < 1 || height_ < 1) {
    picture_.reset();
    return;
  }
  color_ = nullptr;
  const pixels::Image& frame = *scene.frame;
  if (!picture_ || !picture_->isFor(frame, mapping.width, mapping.height, width_, height_)) {
    picture_.emplace(frame.width(), frame.height(), mapping.width, mapping.height, width_, height_);
  }
  picture_->show(frame, scene.dim > 0 ? std::min(scene.dim, 1.0) : 0.0);
}

void Background::fetch(int y, int left, int right, std::uint8_t* pixels) {
  if (right <= left) return;
  if (!color_) return picture_->fetch(y, left, right, pixels);
  std::uint32_t color = 0;
  std::memcpy(&color, color_, sizeof color);
  for (int x = left; x < right; ++x, pixels += 4) std::memcpy(pixels, &color, sizeof color);
}

void Background::drawRow(int y, int left, int right) {
  right = std::min(right, width_);
  if (y >= height_ || left >= right) return;
  std::uint8_t* row = pixels_.row(y);
  const double share = shareOf(y, mapping_.height);
  // The pixels that the canvas covers wholly, then those that it shares.
  const int whole = share < 1 ? left : std::clamp(static_cast<int>(mapping_.width), left, right);
  fetch(y, left, whole, row + 4 * left);
  for (int x = whole; x < right; ++x) {
    std::uint8_t color[4];
    fetch(y, x, x + 1, color);
    mixOver(color, share * shareOf(x, mapping_.width), row + 4 * x);
  }
}

void Background::drawRows(int top, int bottom) {
  for (int y = top; y < bottom; ++y) drawRow(y, 0, width_);
}

void Background::replaceRow(int y, int left, int right) {
  const bool isCovered = y + 1 <= mapping_.height && right <= mapping_.width && right <= width_;
  if (!isCovered || y >= height_)
    std::memset(pixels_.row(y) + 4 * left, 0, 4 * static_cast<std::size_t>(right - left));
  drawRow(y, left, right);
}

}  // namespace render
