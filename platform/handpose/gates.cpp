#include "platform/handpose/gates.h"

namespace platform::handpose {
namespace {

constexpr double kPresenceToKeep = 0.5;
constexpr double kPresenceToStart = 0.7;
// A hand smaller than this gives no usable joints, pixels.
constexpr double kLeastSize = 12;

bool isPossible(const HandReading& reading, const pixels::Image& picture) {
  const HandBox box = boxOf(reading.landmarks);
  return box.size >= kLeastSize && box.centre.x >= 0 && box.centre.x <= picture.width() &&
         box.centre.y >= 0 && box.centre.y <= picture.height();
}

}  // namespace

bool keepsOn(const HandReading& reading, const pixels::Image& picture) {
  return reading.presence >= kPresenceToKeep && isPossible(reading, picture);
}

bool isNewHand(const HandReading& reading, const pixels::Image& picture) {
  return reading.presence >= kPresenceToStart && isPossible(reading, picture);
}

}  // namespace platform::handpose
