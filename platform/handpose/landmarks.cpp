#include "platform/handpose/landmarks.h"

#include <algorithm>
#include <cmath>

namespace platform::handpose {
namespace {

// Shares of the distance between the two joints. With the plain places only about one open hand in
// six counts as spread, with these nearly all do, and pinches hardly change (training/README.md).
constexpr double kWristShift = 0.12;
constexpr double kMiddleMCPShift = 0.10;
constexpr double kLeastShareOfHand = 0.28;

Point between(Point from, Point to, double share) {
  return {from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)};
}

}  // namespace

double distance(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

bool isFinite(const Landmarks& hand) {
  return std::all_of(hand.begin(), hand.end(), [](const Landmark& landmark) {
    return std::isfinite(landmark.at.x) && std::isfinite(landmark.at.y) &&
           std::isfinite(landmark.confidence);
  });
}

double handSize(const Landmarks& hand) {
  Point low = hand[0].at;
  Point high = hand[0].at;
  for (const Landmark& landmark : hand) {
    low = {std::min(low.x, landmark.at.x), std::min(low.y, landmark.at.y)};
    high = {std::max(high.x, landmark.at.x), std::max(high.y, landmark.at.y)};
  }
  const double palm = distance(at(hand, Joint::wrist).at, at(hand, Joint::middleMCP).at);
  return std::max(palm, kLeastShareOfHand * std::max(high.x - low.x, high.y - low.y));
}

Landmarks inReportedConvention(const Landmarks& plain) {
  Landmarks hand = plain;
  const Point wrist = at(plain, Joint::wrist).at;
  const Point middleMCP = at(plain, Joint::middleMCP).at;
  at(hand, Joint::wrist).at = between(wrist, middleMCP, kWristShift);
  at(hand, Joint::middleMCP).at = between(middleMCP, wrist, kMiddleMCPShift);
  return hand;
}

}  // namespace platform::handpose
