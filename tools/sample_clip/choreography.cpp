#include "tools/sample_clip/choreography.h"

#include <string>
#include <vector>

#include "tools/sample_clip/lines.h"
#include "tools/sample_clip/painter.h"

namespace sample_clip {
namespace {

using strokes::Point;

// The word: its letters stand between two lines of the canvas, where the hand that writes them is
// below the face and all its fingers are in the picture. So they are with the wave above.
constexpr double kLetterTop = 0.58;
constexpr double kLetterHeight = 0.15;
constexpr double kLetterWidth = kLetterHeight * 0.8 / kAspect;
constexpr double kLetterStep = kLetterWidth + 0.035;
constexpr double kWordLeft = 0.42;

constexpr double kFarSize = 0.14;
constexpr double kNearSize = 0.23;

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
  for (int i = 0; i <= 8; ++i) knots.push_back({0.42 + 0.04 * i, i % 2 == 0 ? 0.4 : 0.34});
  return curveThrough(knots);
}

}  // namespace

Performance perform() {
  Painter painter({.pen = {0.6, 1.5}, .opening = kOpen, .size = kFarSize});
  painter.wait(0.5);
  painter.moveTo({0.5, 0.5}, 0.6);
  int place = 0;
  for (const std::string name : {"a", "h", "o", "y"}) {
    if (place == 2) painter.changeColor(0.8);
    painter.draw(name, placed(letter(name), place), 1.2, kFarSize, 0);
    ++place;
  }
  painter.changeColor(0.8);
  painter.draw("wave", wave(), 2.0, kNearSize, 0);
  painter.wait(0.2);
  painter.moveTo({0.4, 1.6}, 0.5);
  painter.wait(0.4);
  return painter.take();
}

}  // namespace sample_clip
