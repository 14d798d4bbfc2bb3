#include "tools/sample_clip/choreography.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace sample_clip {
namespace {

using strokes::Point;

// The word: its letters stand between two lines of the canvas.
constexpr double kLetterTop = 0.42;
constexpr double kLetterHeight = 0.18;
constexpr double kLetterWidth = kLetterHeight * 0.8 / kAspect;
constexpr double kLetterStep = kLetterWidth + 0.035;
constexpr double kWordLeft = 0.34;

constexpr double kFarSize = 0.13;
constexpr double kNearSize = 0.25;

/// Slow at both ends, as a hand moves.
double eased(double t) {
  return t * t * (3 - 2 * t);
}

double mix(double a, double b, double t) {
  return a + (b - a) * t;
}

double lengthOnCanvas(Point a, Point b) {
  return std::hypot((a.x - b.x) * kAspect, a.y - b.y);
}

/// A smooth line through `knots` (Catmull-Rom), finely sampled.
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

/// The point that lies the share `t` of its length along a line.
Point alongLine(const std::vector<Point>& line, double t) {
  double total = 0;
  for (std::size_t i = 1; i < line.size(); ++i) total += lengthOnCanvas(line[i - 1], line[i]);
  double left = total * t;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const double step = lengthOnCanvas(line[i - 1], line[i]);
    if (left <= step && step > 0) {
      return {mix(line[i - 1].x, line[i].x, left / step),
              mix(line[i - 1].y, line[i].y, left / step)};
    }
    left -= step;
  }
  return line.back();
}

/// A letter in a box of its own, x and y from 0 to 1; ascenders and descenders stick out.
struct Letter {
  std::string name;
  std::vector<Point> knots;
};

std::vector<Letter> word() {
  return {
      {"a", {{.85, .15}, {.45, 0}, {.05, .5}, {.4, 1}, {.78, .6}, {.85, .1}, {.85, .6}, {1.05, 1}}},
      {"h", {{.1, -.85}, {.1, 0}, {.1, 1}, {.18, .45}, {.5, .08}, {.82, .4}, {.88, 1}}},
      {"o", {{.5, 0}, {.05, .45}, {.5, 1}, {.95, .5}, {.55, 0}, {.4, .02}}},
      {"y", {{.05, 0}, {.2, .75}, {.5, .9}, {.85, .5}, {.9, 0}, {.85, 1}, {.55, 1.65}, {.1, 1.5}}},
  };
}

std::vector<Point> placed(const Letter& letter, int place) {
  std::vector<Point> knots;
  for (const Point& knot : letter.knots) {
    knots.push_back({kWordLeft + place * kLetterStep + knot.x * kLetterWidth,
                     kLetterTop + knot.y * kLetterHeight});
  }
  return curveThrough(knots);
}

std::vector<Point> wave() {
  std::vector<Point> knots;
  for (int i = 0; i <= 8; ++i) knots.push_back({0.72 - 0.05 * i, i % 2 == 0 ? 0.17 : 0.11});
  return curveThrough(knots);
}

/// Plays the performance one action after the other.
class Painter {
 public:
  void wait(double seconds) {
    for (int frame = 0; frame < frames(seconds); ++frame) show();
  }

  void moveTo(Point target, double seconds) {
    const Point from = now_.right.pen;
    during(seconds, [&](double t) {
      now_.right.pen = {mix(from.x, target.x, t), mix(from.y, target.y, t)};
    });
  }

  void changeColor() {
    during(0.4, [&](double t) { now_.leftRaised = t; });
    wait(0.8);
    during(0.4, [&](double t) { now_.leftRaised = 1 - t; });
    ++colorIndex_;
  }

  /// Pinches, follows `line` while the hand's size goes to `size`, and opens the hand again.
  void draw(const std::string& name, const std::vector<Point>& line, double seconds, double size) {
    moveTo(line.front(), 0.4);
    wait(0.1);
    played_.strokes.push_back({name, colorIndex_, {}});
    during(0.15, [&](double t) { now_.right.opening = mix(kOpen, kPinched, t); });
    penDown_ = true;
    wait(0.1);
    const double from = now_.right.size;
    during(seconds, [&](double t) {
      now_.right.pen = alongLine(line, t);
      now_.right.size = mix(from, size, t);
    });
    wait(0.1);
    penDown_ = false;
    during(0.15, [&](double t) { now_.right.opening = mix(kPinched, kOpen, t); });
  }

  Performance take() { return std::move(played_); }

 private:
  static int frames(double seconds) {
    return static_cast<int>(std::lround(seconds * kFramesPerSecond));
  }

  template <class Change>
  void during(double seconds, Change change) {
    for (int frame = 1; frame <= frames(seconds); ++frame) {
      change(eased(static_cast<double>(frame) / frames(seconds)));
      show();
    }
  }

  void show() {
    played_.moments.push_back(now_);
    if (penDown_) played_.strokes.back().points.push_back(now_.right.pen);
  }

  Moment now_{.right = {.pen = {0.6, 1.5}, .opening = kOpen, .size = kFarSize}};
  int colorIndex_ = 0;
  bool penDown_ = false;
  Performance played_;
};

}  // namespace

Performance perform() {
  Painter painter;
  painter.wait(0.5);
  painter.moveTo({0.4, 0.5}, 0.6);
  const std::vector<Letter> letters = word();
  for (int place = 0; place < static_cast<int>(letters.size()); ++place) {
    if (place == 2) painter.changeColor();
    painter.draw(letters[place].name, placed(letters[place], place), 1.2, kFarSize);
  }
  painter.changeColor();
  painter.draw("wave", wave(), 2.0, kNearSize);
  painter.wait(0.2);
  painter.moveTo({0.4, 1.6}, 0.5);
  painter.wait(0.4);
  return painter.take();
}

}  // namespace sample_clip
