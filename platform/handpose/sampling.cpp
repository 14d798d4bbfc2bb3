#include "platform/handpose/sampling.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace platform::handpose {
namespace {

constexpr double kGrey = 128;
// Bilinear sampling skips pixels, and aliases, when it shrinks by more than this.
constexpr double kMostShrinking = 2;
// Averaging over any number of pixels is slow; over two, four, eight it is not. Below this scale
// the one follows on the other.
constexpr double kAverageFrom = 0.25;

cv::Mat wholePicture(const pixels::Image& picture) {
  // OpenCV has no read-only matrix; nothing here writes to this one.
  return {picture.height(), picture.width(), CV_8UC4, const_cast<std::uint8_t*>(picture.row(0)),
          picture.strideBytes()};
}

/// The mean of each 2 x 2 pixels. An odd last row or column is left out, so that the scale is
/// exactly one half; it stays where it is the only one.
cv::Mat halved(const cv::Mat& picture) {
  const int width = std::max(1, picture.cols / 2);
  const int height = std::max(1, picture.rows / 2);
  const cv::Rect even(0, 0, std::min(picture.cols, 2 * width), std::min(picture.rows, 2 * height));
  cv::Mat half;
  cv::resize(picture(even), half, cv::Size(width, height), 0, 0, cv::INTER_AREA);
  return half;
}

bool canBeHalved(const cv::Mat& picture) {
  return picture.cols > 1 && picture.rows > 1;
}

/// The pixels of the picture that lie in the rectangle, and at least the one nearest to it.
cv::Rect pixelsWithin(const cv::Mat& picture, double left, double top, double right,
                      double bottom) {
  const auto first = [](double from, int count) {
    return static_cast<int>(std::clamp(std::floor(from), 0.0, count - 1.0));
  };
  const auto past = [](double to, int least, int count) {
    return static_cast<int>(std::clamp(std::ceil(to), least + 1.0, static_cast<double>(count)));
  };
  const int x = first(left, picture.cols);
  const int y = first(top, picture.rows);
  return {x, y, past(right, x, picture.cols) - x, past(bottom, y, picture.rows) - y};
}

cv::Rect pixelsUnder(const HandCrop& crop, const cv::Mat& picture) {
  const double reach =
      crop.side / 2 * (std::abs(std::cos(crop.angle)) + std::abs(std::sin(crop.angle))) + 2;
  return pixelsWithin(picture, crop.centre.x - reach, crop.centre.y - reach, crop.centre.x + reach,
                      crop.centre.y + reach);
}

}  // namespace

cv::Mat sample(const pixels::Image& picture, const HandCrop& crop, int pixels) {
  const cv::Mat whole = wholePicture(picture);
  const cv::Rect part = pixelsUnder(crop, whole);
  cv::Mat source = whole(part);
  double scale = 1;  // Source pixels per picture pixel.
  while (scale * crop.side > kMostShrinking * pixels && canBeHalved(source)) {
    source = halved(source);
    scale /= 2;
  }
  // From indices of crop pixels to indices of source pixels: an index counts from the centre of
  // the first pixel, a coordinate from its corner.
  const double step = crop.side / pixels * scale;
  const double c = step * std::cos(crop.angle);
  const double s = step * std::sin(crop.angle);
  const Point corner = crop.toPicture({0, 0});
  const double x = scale * (corner.x - part.x) + (c - s) / 2 - 0.5;
  const double y = scale * (corner.y - part.y) + (s + c) / 2 - 0.5;
  const cv::Matx23d matrix(c, -s, x, s, c, y);
  cv::Mat result;
  cv::warpAffine(source, result, matrix, cv::Size(pixels, pixels),
                 cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
  return result;
}

cv::Mat sample(const pixels::Image& picture, const Region& region, int width, int height) {
  const cv::Mat whole = wholePicture(picture);
  const Letterbox letterbox = Letterbox::fit(region, width, height);
  const cv::Rect part =
      pixelsWithin(whole, region.x, region.y, region.x + region.width, region.y + region.height);
  cv::Mat source = whole(part);
  int step = 1;  // Picture pixels per source pixel.
  while (letterbox.scale * step < kAverageFrom && canBeHalved(source)) {
    source = halved(source);
    step *= 2;
  }
  const Point low = letterbox.toNetwork({1.0 * part.x, 1.0 * part.y});
  const Point high =
      letterbox.toNetwork({1.0 * part.x + step * source.cols, 1.0 * part.y + step * source.rows});
  const int left = std::clamp(static_cast<int>(std::lround(low.x)), 0, width - 1);
  const int top = std::clamp(static_cast<int>(std::lround(low.y)), 0, height - 1);
  const int right = std::clamp(static_cast<int>(std::lround(high.x)), left + 1, width);
  const int bottom = std::clamp(static_cast<int>(std::lround(high.y)), top + 1, height);
  cv::Mat result(height, width, CV_8UC4, cv::Scalar::all(kGrey));
  cv::Mat target = result(cv::Rect(left, top, right - left, bottom - top));
  cv::resize(source, target, target.size(), 0, 0,
             letterbox.scale * step < 1 ? cv::INTER_AREA : cv::INTER_LINEAR);
  return result;
}

}  // namespace platform::handpose
