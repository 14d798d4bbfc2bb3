#include "tools/sample_clip/improvisation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "tools/sample_clip/lines.h"
#include "tools/sample_clip/painter.h"
#include "training/render/random.h"

namespace sample_clip {
namespace {

using strokes::Point;
using training::render::Random;

/// What people do between lines.
enum class Break { colorChange, rest, wander, fidget, leave };

/// How this person paints. Lengths in canvas heights.
struct Habits {
  explicit Habits(Random& random)
      : size(random.scale(0.1f, 0.21f)),
        opening(random.between(0.5f, 1.05f)),
        gap(kPinched + random.between(0, 0.06f)),
        pinchSeconds(random.between(0.08f, 0.26f)),
        speed(random.scale(0.25f, 0.95f)),
        holdSeconds(random.between(0.75f, 1.3f)),
        tremor(random.between(0.0002f, 0.0009f)),
        middle{0.5 + random.between(0.06f, 0.14f), random.between(0.44f, 0.54f)} {
    // Within the reach of the arm, and so that the hand stays in the picture.
    reachUp = std::min(2.1 * size, middle.y - 1.1 * size - 0.02);
    reachDown = std::min(2.1 * size, 0.97 - middle.y - 1.1 * size);
    reachAside = std::min({2.7 * size / kAspect, 0.3, 0.9 - middle.x});
  }

  Point anywhere(Random& random) const {
    return {middle.x + reachAside * random.between(-1, 1),
            middle.y + random.between(static_cast<float>(-reachUp), static_cast<float>(reachDown))};
  }

  double size, opening, gap, pinchSeconds, speed, holdSeconds, tremor;
  Point middle;
  double reachUp = 0, reachDown = 0, reachAside = 0;
};

/// A shape about the origin, half a unit to each side.
std::vector<Point> shape(Random& random) {
  const int kind = random.below(5);
  const int turns = 2 + random.below(2);
  const double start = random.between(0, 6.28f);
  std::vector<Point> knots;
  constexpr int kKnots = 26;
  for (int i = 0; i <= kKnots; ++i) {
    const double t = static_cast<double>(i) / kKnots;
    const double angle = start + 2 * std::numbers::pi * t;
    switch (kind) {
      case 0:
        knots.push_back({0.5 * std::cos(angle), 0.5 * std::sin(angle)});
        break;
      case 1:
        knots.push_back({0.5 * t * std::cos(turns * angle), 0.5 * t * std::sin(turns * angle)});
        break;
      case 2:
        knots.push_back({t - 0.5, 0.25 * std::sin(turns * angle)});
        break;
      case 3:
        knots.push_back({0.5 * std::cos(angle), 0.3 * std::sin(2 * angle)});
        break;
      default:
        knots.push_back({(t - 0.5) * std::cos(start), (t - 0.5) * std::sin(start)});
    }
  }
  return knots;
}

/// The line in a box about `middle`, `width` and `height` in canvas heights.
std::vector<Point> placed(std::vector<Point> knots, Point middle, double width, double height) {
  for (Point& knot : knots) {
    knot = {middle.x + knot.x * width / kAspect, middle.y + knot.y * height};
  }
  return curveThrough(knots);
}

class Improviser {
 public:
  explicit Improviser(std::uint64_t seed)
      : random_(seed * 104729 + 11),
        habits_(random_),
        painter_(
            {.pen = {habits_.middle.x, 1.6}, .opening = habits_.opening, .size = habits_.size}) {
    painter_.setPinchSeconds(habits_.pinchSeconds);
    painter_.setPinchedGap(habits_.gap);
  }

  Performance play(double seconds) {
    painter_.wait(0.3);
    painter_.moveTo(habits_.middle, 0.6);
    const int wanted = static_cast<int>(seconds * kFramesPerSecond);
    while (painter_.frames() < wanted) {
      for (int i = random_.below(2); i >= 0; --i) paint();
      take(nextBreak());
    }
    Performance performance = painter_.take();
    liven(performance);
    return performance;
  }

 private:
  void paint() {
    if (random_.chance(0.45f)) {
      write();
      return;
    }
    const double most =
        2 * std::min({habits_.reachUp, habits_.reachDown, habits_.reachAside * kAspect});
    draw("shape",
         placed(shape(random_), habits_.middle, most * random_.between(0.5f, 1),
                most * random_.between(0.5f, 1)),
         0);
  }

  void write() {
    const double height = habits_.reachUp * random_.between(0.5f, 0.7f);
    const double width = 0.8 * height / kAspect;
    const int count = 2 + random_.below(2);
    const double step = std::min(1.35 * width, 2 * habits_.reachAside / count);
    for (int i = 0; i < count; ++i) {
      const auto& letters = alphabet();
      const Letter& chosen =
          letters[static_cast<std::size_t>(random_.below(static_cast<int>(letters.size())))];
      std::vector<Point> knots;
      for (const Point& knot : chosen.knots) {
        knots.push_back({habits_.middle.x + step * (i - 0.5 * count) + width * knot.x,
                         habits_.middle.y - 0.3 * height + height * knot.y});
      }
      draw(chosen.name, curveThrough(knots), 0);
    }
  }

  void draw(const std::string& name, const std::vector<Point>& line, double restSeconds) {
    const double seconds = std::max(0.25, lengthOf(line) / habits_.speed);
    const double size = habits_.size * random_.between(0.9f, 1.12f);
    painter_.draw(name, line, seconds, size, restSeconds);
  }

  Break nextBreak() {
    if (breaks_.empty()) {
      breaks_ = {Break::colorChange, Break::rest,   Break::colorChange,
                 Break::wander,      Break::fidget, Break::leave};
      for (std::size_t i = breaks_.size(); i > 1; --i) {
        std::swap(breaks_[i - 1],
                  breaks_[static_cast<std::size_t>(random_.below(static_cast<int>(i)))]);
      }
    }
    const Break chosen = breaks_.back();
    breaks_.pop_back();
    return chosen;
  }

  void take(Break chosen) {
    switch (chosen) {
      case Break::colorChange:
        painter_.changeColor(habits_.holdSeconds);
        break;
      case Break::rest: {
        const Point at = habits_.anywhere(random_);
        const Point beside{at.x + 0.02, at.y};
        draw("dot", curveThrough({at, beside}), 1.5);
        break;
      }
      case Break::wander:
        for (int i = 0; i < 3; ++i) painter_.moveTo(habits_.anywhere(random_), 0.5);
        break;
      case Break::fidget:
        painter_.fidget(0.6);
        break;
      case Break::leave:
        painter_.moveTo({habits_.middle.x, 1.6}, 0.5);
        painter_.wait(0.3);
        painter_.moveTo(habits_.middle, 0.5);
        break;
    }
  }

  /// Nobody holds still: the hand trembles a little, the head turns.
  void liven(Performance& performance) {
    const double phase = random_.between(0, 6.28f);
    const double quick = random_.between(5, 9);
    const double slow = random_.between(0.6f, 1.4f);
    const double turn = random_.between(0.02f, 0.2f);
    for (std::size_t i = 0; i < performance.moments.size(); ++i) {
      const double t = 2 * std::numbers::pi * static_cast<double>(i) / kFramesPerSecond;
      Moment& moment = performance.moments[i];
      moment.right.pen.x += habits_.tremor / kAspect *
                            (std::sin(quick * t + phase) + 2 * std::sin(slow * t + 2 * phase));
      moment.right.pen.y += habits_.tremor * (std::sin(1.1 * quick * t) + 2 * std::cos(slow * t));
      moment.headTurned = turn * std::sin(0.21 * t + phase);
    }
  }

  Random random_;
  Habits habits_;
  Painter painter_;
  std::vector<Break> breaks_;
};

}  // namespace

Performance improvise(std::uint64_t seed, double seconds) {
  return Improviser(seed).play(seconds);
}

}  // namespace sample_clip
