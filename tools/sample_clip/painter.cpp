#include "tools/sample_clip/painter.h"

#include <cmath>

#include "tools/sample_clip/lines.h"

namespace sample_clip {
namespace {

using strokes::Point;

constexpr double kRaiseSeconds = 0.4;
constexpr double kSettleSeconds = 0.1;  // Before and after a line.
constexpr double kApproachSeconds = 0.4;

/// Slow at both ends, as a hand moves.
double eased(double t) {
  return t * t * (3 - 2 * t);
}

double mix(double a, double b, double t) {
  return a + (b - a) * t;
}

int framesIn(double seconds) {
  return static_cast<int>(std::lround(seconds * kFramesPerSecond));
}

}  // namespace

Painter::Painter(const WritingHand& start) : now_{.right = start}, open_(start.opening) {}

void Painter::wait(double seconds) {
  for (int frame = 0; frame < framesIn(seconds); ++frame) show();
}

void Painter::moveTo(Point target, double seconds) {
  const Point from = now_.right.pen;
  during(seconds, [&](double t) {
    now_.right.pen = {mix(from.x, target.x, t), mix(from.y, target.y, t)};
  });
}

void Painter::changeColor(double holdSeconds) {
  const int first = frames();
  showLeft(OtherHand::spread, holdSeconds);
  played_.colorChanges.push_back({first, frames()});
  ++colorIndex_;
}

void Painter::fidget(double holdSeconds) {
  showLeft(OtherHand::idle, holdSeconds);
}

void Painter::draw(const std::string& name, const std::vector<Point>& line, double seconds,
                   double size, double restSeconds) {
  moveTo(line.front(), kApproachSeconds);
  wait(kSettleSeconds);
  played_.strokes.push_back({name, colorIndex_, {}});
  during(pinchSeconds_, [&](double t) { now_.right.opening = mix(open_, pinchedGap_, t); });
  penDown_ = true;
  wait(kSettleSeconds);
  const double from = now_.right.size;
  during(seconds, [&](double t) {
    now_.right.pen = alongLine(line, t);
    now_.right.size = mix(from, size, t);
  });
  wait(kSettleSeconds);
  if (restSeconds > 0) {
    const int first = frames();
    wait(restSeconds);
    played_.rests.push_back({first, frames()});
  }
  penDown_ = false;
  during(pinchSeconds_, [&](double t) { now_.right.opening = mix(pinchedGap_, open_, t); });
}

template <class Change>
void Painter::during(double seconds, Change change) {
  const int count = framesIn(seconds);
  for (int frame = 1; frame <= count; ++frame) {
    change(eased(static_cast<double>(frame) / count));
    show();
  }
}

void Painter::showLeft(OtherHand hand, double holdSeconds) {
  now_.left = hand;
  during(kRaiseSeconds, [&](double t) { now_.leftRaised = t; });
  wait(holdSeconds);
  during(kRaiseSeconds, [&](double t) { now_.leftRaised = 1 - t; });
}

void Painter::show() {
  played_.moments.push_back(now_);
  if (penDown_) played_.strokes.back().points.push_back(now_.right.pen);
}

}  // namespace sample_clip
