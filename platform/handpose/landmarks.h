#pragma once

#include <array>
#include <cstddef>

namespace platform::handpose {

/// The joints of a hand in the order in which the networks give them: each finger from its base to
/// its tip.
enum class Joint {
  wrist,
  thumbCMC,
  thumbMCP,
  thumbIP,
  thumbTip,
  indexMCP,
  indexPIP,
  indexDIP,
  indexTip,
  middleMCP,
  middlePIP,
  middleDIP,
  middleTip,
  ringMCP,
  ringPIP,
  ringDIP,
  ringTip,
  littleMCP,
  littlePIP,
  littleDIP,
  littleTip
};

inline constexpr std::size_t kJointCount = 21;

/// A place in a picture: pixels from its top left corner, y downwards. The centre of the first
/// pixel is (0.5, 0.5).
struct Point {
  double x = 0;
  double y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

double distance(Point a, Point b);

/// One joint, and the probability that it really lies about there.
struct Landmark {
  Point at;
  double confidence = 0;

  friend bool operator==(const Landmark&, const Landmark&) = default;
};

using Landmarks = std::array<Landmark, kJointCount>;

inline const Landmark& at(const Landmarks& hand, Joint joint) {
  return hand[static_cast<std::size_t>(joint)];
}
inline Landmark& at(Landmarks& hand, Joint joint) {
  return hand[static_cast<std::size_t>(joint)];
}

/// False where a coordinate or a confidence is not a number or infinite.
bool isFinite(const Landmarks& hand);

/// Wrist to middle MCP, but at least a fixed share of the whole hand, because a palm seen from its
/// edge is foreshortened to nothing.
double handSize(const Landmarks& hand);

/// The same hand with wrist and middle MCP where the gesture rules expect them: a little towards
/// each other. The networks, and every crop, use the plain places.
Landmarks inReportedConvention(const Landmarks& plain);

}  // namespace platform::handpose
