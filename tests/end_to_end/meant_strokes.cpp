#include "tests/end_to_end/meant_strokes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>

namespace end_to_end {
namespace {

using strokes::Point;

constexpr double kAspect = 16.0 / 9;

/// In canvas heights.
double distanceToSide(Point p, Point a, Point b) {
  const double px = (p.x - a.x) * kAspect;
  const double py = p.y - a.y;
  const double sx = (b.x - a.x) * kAspect;
  const double sy = b.y - a.y;
  const double length2 = sx * sx + sy * sy;
  const double t = length2 > 0 ? std::clamp((px * sx + py * sy) / length2, 0.0, 1.0) : 0;
  return std::hypot(px - t * sx, py - t * sy);
}

}  // namespace

std::vector<MeantStroke> meantStrokes() {
  std::ifstream file(WAVESCRIBE_ASSETS "/sample-path.json");
  const nlohmann::json path = nlohmann::json::parse(file);
  std::vector<MeantStroke> meant;
  for (const auto& json : path.at("strokes")) {
    meant.push_back({json.at("name"), json.at("color"), {}});
    for (const auto& point : json.at("points")) {
      meant.back().points.push_back({point.at(0), point.at(1)});
    }
  }
  return meant;
}

double meanDistance(const std::vector<Point>& points, const std::vector<Point>& line) {
  double sum = 0;
  for (const Point& point : points) {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i) {
      nearest = std::min(nearest, distanceToSide(point, line[i - 1], line[i]));
    }
    sum += nearest;
  }
  return sum / static_cast<double>(points.size());
}

std::vector<Point> pathOf(const strokes::Stroke& stroke) {
  std::vector<Point> path;
  for (const strokes::StrokePoint& point : stroke.points) path.push_back({point.x, point.y});
  return path;
}

}  // namespace end_to_end
