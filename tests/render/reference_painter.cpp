#include "reference_painter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "strokes/palette.h"
#include "strokes/stroke_model.h"

namespace render {

namespace {

constexpr int kLinesPerCurve = 48;
constexpr int kSamples = 16;

struct Line {
  double x0, y0, x1, y1, half;
};

/// A mask with a margin all around the picture, so that glow comes in from outside it.
struct Mask {
  int margin, width, height;
  std::vector<double> values;
  std::vector<bool> edges;

  std::size_t index(int x, int y) const {
    return static_cast<std::size_t>(y + margin) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x + margin);
  }
  bool isEdge(int x, int y) const { return edges[index(x, y)]; }
  double& at(int x, int y) { return values[index(x, y)]; }
};

std::vector<Line> linesOf(const strokes::Stroke& stroke, double canvasWidth, double canvasHeight,
                          double widthShare) {
  std::vector<Line> lines;
  for (const auto& s : strokes::StrokeModel::segments(stroke.points)) {
    const double half = std::max(s.width * canvasHeight / 800 * widthShare, 1.0) / 2;
    const auto at = [&](double t) {
      const double a = (1 - t) * (1 - t), b = 2 * t * (1 - t), c = t * t;
      return std::array{(a * s.start.x + b * s.control.x + c * s.end.x) * canvasWidth,
                        (a * s.start.y + b * s.control.y + c * s.end.y) * canvasHeight};
    };
    for (int i = 0; i < kLinesPerCurve; ++i) {
      const auto from = at(static_cast<double>(i) / kLinesPerCurve);
      const auto to = at(static_cast<double>(i + 1) / kLinesPerCurve);
      lines.push_back({from[0], from[1], to[0], to[1], half});
    }
  }
  return lines;
}

double depth(const Line& l, double x, double y) {
  const double dx = l.x1 - l.x0, dy = l.y1 - l.y0;
  const double length2 = dx * dx + dy * dy;
  const double t =
      length2 > 0 ? std::clamp(((x - l.x0) * dx + (y - l.y0) * dy) / length2, 0.0, 1.0) : 0;
  return l.half - std::hypot(x - l.x0 - t * dx, y - l.y0 - t * dy);
}

/// A share of a pixel, and whether the border comes near enough to touch it.
struct Share {
  double value = 0;
  bool isEdge = false;
};

Share coverage(const std::vector<Line>& lines, int px, int py) {
  std::vector<const Line*> near;
  for (const Line& line : lines) {
    const double d = depth(line, px + 0.5, py + 0.5);
    if (d > 0.75) return {1, false};
    if (d > -0.75) near.push_back(&line);
  }
  if (near.empty()) return {};
  int inside = 0;
  for (int i = 0; i < kSamples * kSamples; ++i) {
    const double x = px + (i % kSamples + 0.5) / kSamples;
    const double y = py + (i / kSamples + 0.5) / kSamples;
    inside += std::any_of(near.begin(), near.end(),
                          [&](const Line* line) { return depth(*line, x, y) >= 0; });
  }
  return {static_cast<double>(inside) / (kSamples * kSamples), true};
}

Mask paintMask(const std::vector<Line>& lines, int width, int height, int margin) {
  Mask mask{margin, width + 2 * margin, height + 2 * margin, {}, {}};
  mask.values.assign(static_cast<std::size_t>(mask.width) * static_cast<std::size_t>(mask.height),
                     0);
  mask.edges.assign(mask.values.size(), false);
  // Only the lines near a block of pixels are asked.
  constexpr int kBlock = 8;
  for (int y0 = -margin; y0 < height + margin; y0 += kBlock) {
    for (int x0 = -margin; x0 < width + margin; x0 += kBlock) {
      std::vector<Line> near;
      for (const Line& line : lines) {
        if (depth(line, x0 + kBlock / 2.0, y0 + kBlock / 2.0) > -kBlock) near.push_back(line);
      }
      if (near.empty()) continue;
      for (int y = y0; y < std::min(y0 + kBlock, height + margin); ++y) {
        for (int x = x0; x < std::min(x0 + kBlock, width + margin); ++x) {
          const Share share = coverage(near, x, y);
          mask.at(x, y) = share.value;
          mask.edges[mask.index(x, y)] = share.isEdge;
        }
      }
    }
  }
  return mask;
}

Mask blurred(const Mask& mask, double sigma) {
  const int radius = static_cast<int>(std::ceil(4.5 * sigma));
  std::vector<double> bell;
  double sum = 0;
  for (int k = -radius; k <= radius; ++k) {
    bell.push_back(std::exp(-0.5 * k * k / (sigma * sigma)));
    sum += bell.back();
  }
  for (double& weight : bell) weight /= sum;
  Mask across = mask, result = mask;
  const auto convolve = [&](const Mask& from, Mask& to, int lines, int length, int step,
                            int stride) {
    for (int line = 0; line < lines; ++line) {
      for (int i = 0; i < length; ++i) {
        double value = 0;
        const int first = std::max(-radius, -i), last = std::min(radius, length - 1 - i);
        for (int k = first; k <= last; ++k)
          value += bell[static_cast<std::size_t>(k + radius)] *
                   from.values[static_cast<std::size_t>(line * stride + (i + k) * step)];
        to.values[static_cast<std::size_t>(line * stride + i * step)] = value;
      }
    }
  };
  convolve(mask, across, mask.height, mask.width, 1, mask.width);
  convolve(across, result, mask.width, mask.height, mask.width, 1);
  return result;
}

}  // namespace

ReferencePicture referencePicture(const strokes::Stroke& stroke, bool glow, double canvasWidth,
                                  double canvasHeight, int width, int height) {
  const double scale = canvasHeight / 800;
  const int margin = glow ? static_cast<int>(std::ceil(4.5 * 15 * scale)) : 1;
  Mask body = paintMask(linesOf(stroke, canvasWidth, canvasHeight, 1), width, height, margin);
  Mask wide = body, narrow = body, core = body;
  if (glow) {
    wide = blurred(body, 15 * scale);
    narrow = blurred(body, 5 * scale);
    core = paintMask(linesOf(stroke, canvasWidth, canvasHeight, 0.4), width, height, margin);
  }
  const auto& color = strokes::Palette::colorAt(stroke.colorIndex);
  ReferencePicture picture{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double b = body.at(x, y);
      if (!glow) {
        picture.pixels.push_back(
            {255 * color.b * b, 255 * color.g * b, 255 * color.r * b, 255 * b, body.isEdge(x, y)});
        continue;
      }
      const double clear = (1 - wide.at(x, y)) * (1 - b) * (1 - narrow.at(x, y)) * (1 - b);
      const double c = core.at(x, y);
      const auto mix = [&](double component) {
        const double light = component + (1 - component) * 0.65;
        return 255 * (component * (1 - clear) * (1 - c) + light * c);
      };
      picture.pixels.push_back({mix(color.b), mix(color.g), mix(color.r),
                                255 * (1 - clear * (1 - c)),
                                body.isEdge(x, y) || core.isEdge(x, y)});
    }
  }
  return picture;
}

}  // namespace render
