#include "strokes/stroke_points.h"

#include <algorithm>
#include <utility>

namespace strokes {

StrokePoints::StrokePoints(std::initializer_list<StrokePoint> points)
    : StrokePoints(std::vector<StrokePoint>(points)) {}

StrokePoints::StrokePoints(std::vector<StrokePoint> points)
    : points_(std::make_shared<std::vector<StrokePoint>>(std::move(points))) {}

void StrokePoints::append(const StrokePoint& point) {
  if (!points_) points_ = std::make_shared<std::vector<StrokePoint>>();
  if (points_.use_count() > 1) {
    auto own = std::make_shared<std::vector<StrokePoint>>();
    own->reserve(points_->size() * 2 + 1);
    own->assign(points_->begin(), points_->end());
    points_ = std::move(own);
  }
  points_->push_back(point);
}

bool operator==(const StrokePoints& a, const StrokePoints& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace strokes
