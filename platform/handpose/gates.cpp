#include "platform/handpose/gates.h"

namespace platform::handpose {
namespace {

constexpr double kPresenceToKeep = 0.5;
// On the pictures of people whom the networks never saw in training, this keeps nearly all hands
// and hardly a face; either network alone does worse.
constexpr double kSureness = 0.3;
// A hand smaller than this gives no usable joints, pixels.
constexpr double kLeastSize = 12;

bool isPossible(const HandReading& reading, const pixels::Image& picture) {
  const HandBox box = boxOf(reading.landmarks);
  return box.size >= kLeastSize && box.centre.x >= 0 && box.centre.x <= picture.width() &&
         box.centre.y >= 0 && box.centre.y <= picture.height();
}

}  // namespace

double scoreOf(const HandReading& reading) {
  double sum = 0;
  for (const Landmark& landmark : reading.landmarks) sum += landmark.confidence;
  return reading.presence * (1 + sum / kJointCount) / 2;
}

bool agreeOnHand(double found, double read) {
  return found * read >= kSureness;
}

bool keepsOn(const HandReading& reading, const pixels::Image& picture) {
  return reading.presence >= kPresenceToKeep && isPossible(reading, picture);
}

bool isNewHand(const HandCandidate& candidate, const HandReading& reading,
               const pixels::Image& picture) {
  return agreeOnHand(candidate.score, scoreOf(reading)) && isPossible(reading, picture);
}

}  // namespace platform::handpose
