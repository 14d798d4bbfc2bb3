#include "hand/reading.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace hand {
namespace {

/// Smaller hands are too far away for their fingers to be told apart; image heights.
constexpr double kMinSpreadSize = 0.02;
// The rest are shares of the hand's size.
constexpr double kMinFingerReach = 1.6;
constexpr double kMinFingerGap = 0.3;
constexpr double kMinThumbGap = 0.7;

std::optional<Position> point(const platform::HandObservation& observation,
                              platform::HandJoint joint) {
  const std::optional<platform::RecognizedPoint>& seen = observation[joint];
  if (!seen || !(seen->confidence > kMinConfidence)) return std::nullopt;
  return Position{seen->x, seen->y};
}

}  // namespace

double distance(Position a, Position b, double aspect) {
  const double across = (a.x - b.x) * aspect;
  const double up = a.y - b.y;
  return std::sqrt(across * across + up * up);
}

std::optional<Reading> reading(const platform::HandObservation& observation, double aspect) {
  using enum platform::HandJoint;
  const std::optional<Position> seenWrist = point(observation, wrist);
  const std::optional<Position> seenThumb = point(observation, thumbTip);
  const std::optional<Position> seenIndex = point(observation, indexTip);
  const std::optional<Position> seenKnuckle = point(observation, middleMCP);
  if (!seenWrist || !seenThumb || !seenIndex || !seenKnuckle) return std::nullopt;

  return Reading{.chirality = observation.chirality,
                 .wrist = *seenWrist,
                 .thumbTip = *seenThumb,
                 .indexTip = *seenIndex,
                 .middleMCP = *seenKnuckle,
                 .middleTip = point(observation, middleTip),
                 .ringTip = point(observation, ringTip),
                 .littleTip = point(observation, littleTip),
                 .size = distance(*seenWrist, *seenKnuckle, aspect)};
}

bool isSpread(const Reading& reading, double aspect) {
  if (!reading.middleTip || !reading.ringTip || !reading.littleTip) return false;
  if (reading.size < kMinSpreadSize) return false;

  const auto closer = [&](Position a, Position b, double share) {
    return distance(a, b, aspect) < share * reading.size;
  };
  const std::array fingers{reading.indexTip, *reading.middleTip, *reading.ringTip,
                           *reading.littleTip};
  for (const Position finger : fingers) {
    if (closer(reading.wrist, finger, kMinFingerReach)) return false;
  }
  for (std::size_t i = 1; i < fingers.size(); ++i) {
    if (closer(fingers[i - 1], fingers[i], kMinFingerGap)) return false;
  }
  return !closer(reading.thumbTip, reading.indexTip, kMinThumbGap);
}

}  // namespace hand
