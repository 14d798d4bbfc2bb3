#include "tools/sample_clip/lines.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "tools/sample_clip/performance.h"

namespace sample_clip {

using strokes::Point;

double lengthOnCanvas(Point a, Point b) {
  return std::hypot((a.x - b.x) * kAspect, a.y - b.y);
}

double lengthOf(const std::vector<Point>& line) {
  double length = 0;
  for (std::size_t i = 1; i < line.size(); ++i) length += lengthOnCanvas(line[i - 1], line[i]);
  return length;
}

std::vector<Point> curveThrough(const std::vector<Point>& knots) {
  constexpr int kSteps = 24;
  std::vector<Point> curve{knots.front()};
  for (std::size_t i = 0; i + 1 < knots.size(); ++i) {
    const Point& before = knots[i == 0 ? 0 : i - 1];
    const Point& after = knots[std::min(i + 2, knots.size() - 1)];
    for (int step = 1; step <= kSteps; ++step) {
      const double t = static_cast<double>(step) / kSteps;
      const auto along = [t](double p0, double p1, double p2, double p3) {
        return p1 +
               0.5 * t *
                   (p2 - p0 + t * (2 * p0 - 5 * p1 + 4 * p2 - p3 + t * (3 * (p1 - p2) + p3 - p0)));
      };
      curve.push_back({along(before.x, knots[i].x, knots[i + 1].x, after.x),
                       along(before.y, knots[i].y, knots[i + 1].y, after.y)});
    }
  }
  return curve;
}

Point alongLine(const std::vector<Point>& line, double t) {
  double left = lengthOf(line) * t;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const double step = lengthOnCanvas(line[i - 1], line[i]);
    if (left <= step && step > 0) {
      const double share = left / step;
      return {line[i - 1].x + share * (line[i].x - line[i - 1].x),
              line[i - 1].y + share * (line[i].y - line[i - 1].y)};
    }
    left -= step;
  }
  return line.back();
}

const std::vector<Letter>& alphabet() {
  static const std::vector<Letter> kLetters{
      {"a", {{.85, .15}, {.45, 0}, {.05, .5}, {.4, 1}, {.78, .6}, {.85, .1}, {.85, .6}, {1.05, 1}}},
      {"c", {{.9, .15}, {.5, 0}, {.05, .5}, {.5, 1}, {.95, .8}}},
      {"e", {{.1, .5}, {.9, .45}, {.5, 0}, {.05, .5}, {.5, 1}, {.95, .8}}},
      {"h", {{.1, -.85}, {.1, 0}, {.1, 1}, {.18, .45}, {.5, .08}, {.82, .4}, {.88, 1}}},
      {"l", {{.1, .8}, {.6, -.3}, {.45, -.85}, {.3, -.4}, {.35, .8}, {.8, .95}}},
      {"m", {{.0, 0}, {.05, 1}, {.2, .1}, {.45, .2}, {.5, 1}, {.65, .1}, {.9, .2}, {1, 1}}},
      {"n", {{.1, 0}, {.12, 1}, {.2, .35}, {.55, .05}, {.85, .4}, {.9, 1}}},
      {"o", {{.5, 0}, {.05, .45}, {.5, 1}, {.95, .5}, {.55, 0}, {.4, .02}}},
      {"s", {{.85, .1}, {.45, 0}, {.2, .25}, {.55, .5}, {.8, .75}, {.45, 1}, {.1, .9}}},
      {"u", {{.1, 0}, {.12, .7}, {.45, 1}, {.8, .6}, {.88, 0}, {.9, .7}, {1.05, 1}}},
      {"w", {{0, 0}, {.2, .95}, {.5, .25}, {.75, .95}, {1, 0}}},
      {"y", {{.05, 0}, {.2, .75}, {.5, .9}, {.85, .5}, {.9, 0}, {.85, 1}, {.55, 1.65}, {.1, 1.5}}},
      {"z", {{.05, .05}, {.9, .02}, {.5, .5}, {.08, .95}, {.95, .97}}},
  };
  return kLetters;
}

const Letter& letter(const std::string& name) {
  const auto found = std::ranges::find(alphabet(), name, &Letter::name);
  assert(found != alphabet().end());
  return *found;
}

}  // namespace sample_clip
