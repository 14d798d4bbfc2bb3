#include "platform/handpose/hand_box.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace platform::handpose {
namespace {

// As in training: a box is never smaller than the palm and a little more.
constexpr double kLeastPalms = 1.1;
// Nearer than this share of the larger box, and not smaller than that one by more than this.
constexpr double kSamePlace = 0.35;
constexpr double kSameSize = 0.5;

}  // namespace

HandBox boxOf(const Landmarks& hand) {
  const Point wrist = at(hand, Joint::wrist).at;
  const Point knuckle = at(hand, Joint::middleMCP).at;
  HandBox box;
  box.angle = std::atan2(knuckle.y - wrist.y, knuckle.x - wrist.x) + std::numbers::pi / 2;
  const double c = std::cos(box.angle);
  const double s = std::sin(box.angle);

  double left = std::numeric_limits<double>::infinity();
  double top = left;
  double right = -left;
  double bottom = -left;
  for (const Landmark& landmark : hand) {
    const double x = c * landmark.at.x + s * landmark.at.y;
    const double y = c * landmark.at.y - s * landmark.at.x;
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
  }
  const double x = (left + right) / 2;
  const double y = (top + bottom) / 2;
  box.centre = {c * x - s * y, s * x + c * y};
  box.size = std::max({right - left, bottom - top, kLeastPalms * distance(wrist, knuckle)});
  return box;
}

bool coverSameHand(const HandBox& a, const HandBox& b) {
  const double larger = std::max(a.size, b.size);
  const double smaller = std::min(a.size, b.size);
  return distance(a.centre, b.centre) < kSamePlace * larger && smaller >= kSameSize * larger;
}

}  // namespace platform::handpose
