#include "strokes/stroke_model.h"

#include <cstddef>

namespace strokes::StrokeModel {

namespace {

Point position(const StrokePoint& p) {
  return {p.x, p.y};
}

Point middle(const StrokePoint& a, const StrokePoint& b) {
  return {(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
}

}  // namespace

std::vector<StrokeSegment> segments(const StrokePoints& p) {
  const std::size_t n = p.size();
  std::vector<StrokeSegment> result;
  if (n == 0) return result;
  result.reserve(n);
  if (n == 1) {
    result.push_back({position(p[0]), position(p[0]), position(p[0]), p[0].w});
    return result;
  }
  const Point firstMiddle = middle(p[0], p[1]);
  result.push_back({position(p[0]), firstMiddle, firstMiddle, (p[0].w + p[1].w) * 0.5});
  for (std::size_t k = 1; k + 1 < n; ++k) {
    result.push_back({middle(p[k - 1], p[k]), position(p[k]), middle(p[k], p[k + 1]), p[k].w});
  }
  const Point last = position(p[n - 1]);
  result.push_back({middle(p[n - 2], p[n - 1]), last, last, (p[n - 2].w + p[n - 1].w) * 0.5});
  return result;
}

}  // namespace strokes::StrokeModel
