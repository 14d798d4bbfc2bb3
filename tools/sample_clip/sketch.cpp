#include "tools/sample_clip/sketch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "tools/sample_clip/posture.h"

namespace sample_clip {
namespace {

struct Color {
  double r = 0;
  double g = 0;
  double b = 0;
};

constexpr Color kSkin{.86, .66, .55};
constexpr Color kShirt{.25, .42, .46};
constexpr Color kHair{.24, .17, .13};

Color shaded(Color color, double light) {
  return {color.r * light, color.g * light, color.b * light};
}

/// Draws rounded shapes into a surface, in image heights from the bottom left.
class Sketchbook {
 public:
  Sketchbook(int width, int height) : surface_(width, height), scale_(height) {}

  /// Fills everything by a function of the place.
  template <class Paint>
  void ground(Paint paint) {
    for (int y = 0; y < surface_.height(); ++y) {
      for (int x = 0; x < surface_.width(); ++x) put(x, y, paint(placeOf(x, y)), 1);
    }
  }

  /// A limb from `a` to `b` with round ends, lit from above left.
  void limb(Place a, double radiusA, Place b, double radiusB, Color color) {
    const double reach = std::max(radiusA, radiusB) + 2 / scale_;
    const int left = column(std::min(a.x, b.x) - reach);
    const int right = column(std::max(a.x, b.x) + reach);
    const int top = row(std::max(a.y, b.y) + reach);
    const int bottom = row(std::min(a.y, b.y) - reach);
    const Place along = b + -1 * a;
    const double length2 = along.x * along.x + along.y * along.y;
    for (int y = std::max(top, 0); y < std::min(bottom, surface_.height()); ++y) {
      for (int x = std::max(left, 0); x < std::min(right, surface_.width()); ++x) {
        const Place from = placeOf(x, y) + -1 * a;
        const double dot = from.x * along.x + from.y * along.y;
        const double t = length2 > 0 ? std::clamp(dot / length2, 0.0, 1.0) : 0;
        const double radius = radiusA + (radiusB - radiusA) * t;
        const Place away = from + -t * along;
        const double distance = std::hypot(away.x, away.y);
        const double light = 1 + 0.22 * (away.y - 0.6 * away.x) / radius - 0.25 * distance / radius;
        put(x, y, shaded(color, std::clamp(light, 0.3, 1.2)),
            std::clamp((radius - distance) * scale_ + 0.5, 0.0, 1.0));
      }
    }
  }

  pixels::Surface take() { return std::move(surface_); }

 private:
  Place placeOf(int x, int y) const { return {(x + 0.5) / scale_, 1 - (y + 0.5) / scale_}; }
  int column(double x) const { return static_cast<int>(std::floor(x * scale_)); }
  int row(double y) const { return static_cast<int>(std::floor((1 - y) * scale_)); }

  void put(int x, int y, Color color, double coverage) {
    std::uint8_t* pixel = surface_.view().row(y) + 4 * static_cast<std::ptrdiff_t>(x);
    const double channels[] = {color.b, color.g, color.r, 1};
    for (int i = 0; i < 4; ++i) {
      const double mixed = pixel[i] * (1 - coverage) + 255 * channels[i] * coverage;
      pixel[i] = static_cast<std::uint8_t>(std::clamp(std::lround(mixed), 0L, 255L));
    }
  }

  pixels::Surface surface_;
  double scale_;
};

Color room(Place place) {
  const bool window = place.x > 1.15 && place.x < 1.62 && place.y > 0.5 && place.y < 0.93;
  if (window) return shaded({.75, .84, .93}, .8 + .2 * place.y);
  const bool shelf = place.x < 0.5 && std::abs(place.y - 0.62) < 0.012;
  if (shelf) return {.42, .3, .2};
  const bool books = place.x > 0.08 && place.x < 0.4 && place.y > 0.632 && place.y < 0.76;
  if (books) {
    const double book = std::floor(place.x * 32);
    return {.35 + .3 * std::abs(std::sin(book)), .3 + .2 * std::abs(std::sin(2 * book)), .32};
  }
  const double light = 0.55 + 0.25 * place.x / kAspect + 0.1 * place.y;
  return shaded({.88, .84, .78}, light);
}

void drawHand(Sketchbook& book, const HandPosture& hand) {
  const double s = hand.size;
  for (const Place& knuckle : hand.knuckles) {
    book.limb(hand.wrist, .27 * s, knuckle, .17 * s, kSkin);
  }
  for (std::size_t i = hand.tips.size(); i-- > 0;) {
    const double thick = i == 0 ? .16 * s : .13 * s;
    book.limb(hand.knuckles[i], thick, hand.bends[i], .9 * thick, kSkin);
    book.limb(hand.bends[i], .9 * thick, hand.tips[i], .75 * thick, kSkin);
  }
}

void drawArm(Sketchbook& book, Place shoulder, double outwards, const HandPosture& hand) {
  const Place elbow =
      between(shoulder, hand.wrist, .5) + Place{outwards * .12, -.22 * (hand.wrist.y > 0 ? 1 : 0)};
  book.limb(shoulder, .085, elbow, .07, kShirt);
  book.limb(elbow, .07, between(elbow, hand.wrist, .7), .05, kShirt);
  book.limb(between(elbow, hand.wrist, .68), .038, hand.wrist, .27 * hand.size, kSkin);
}

}  // namespace

pixels::Surface sketch(const Moment& moment, int width, int height) {
  Sketchbook book(width, height);
  book.ground(room);
  const std::vector<HandPosture> hands = handsAt(moment);

  // The painter comes nearer as the hands grow.
  const double near = 1 + 0.35 * (moment.right.size / 0.13 - 1);
  const double middle = 0.5 * kAspect;
  const Place neck{middle, 0.44};
  const auto fromNeck = [&](double x, double y) { return neck + near * Place{x, y}; };
  book.limb(fromNeck(0, -.1), .2 * near, fromNeck(0, -.8), .26 * near, kShirt);
  book.limb(fromNeck(-.17, -.06), .09 * near, fromNeck(.17, -.06), .09 * near, kShirt);
  book.limb(fromNeck(0, -.02), .06 * near, fromNeck(0, .1), .06 * near, shaded(kSkin, .85));
  book.limb(fromNeck(0, .27), .125 * near, fromNeck(0, .2), .12 * near, kHair);
  book.limb(fromNeck(0, .22), .105 * near, fromNeck(0, .15), .085 * near, kSkin);
  for (const double side : {-.04, .04}) {
    book.limb(fromNeck(side, .2), .012 * near, fromNeck(side, .2), .012 * near, {.15, .12, .1});
  }
  book.limb(fromNeck(-.03, .1), .006 * near, fromNeck(.03, .1), .006 * near, {.6, .3, .3});

  drawArm(book, fromNeck(-.19, -.08), -1, hands[0]);
  drawArm(book, fromNeck(.19, -.08), 1, hands[1]);
  for (const HandPosture& hand : hands) drawHand(book, hand);
  return book.take();
}

}  // namespace sample_clip
