#pragma once

#include <optional>

#include "platform/hand_pose_request.h"

namespace hand {

/// A position in the frame as the detector gives it: 0 to 1 from the left and from the bottom.
struct Position {
  double x = 0;
  double y = 0;

  friend bool operator==(const Position&, const Position&) = default;
};

/// What painting needs to know of one hand in one frame.
struct Reading {
  platform::Chirality chirality = platform::Chirality::unknown;
  Position wrist;
  Position thumbTip;
  Position indexTip;
  Position middleMCP;
  std::optional<Position> middleTip;
  std::optional<Position> ringTip;
  std::optional<Position> littleTip;
  double size = 0;  ///< From the wrist to the knuckle of the middle finger, in image heights.

  friend bool operator==(const Reading&, const Reading&) = default;
};

/// A joint counts only when the detector is surer of it than this.
inline constexpr float kMinConfidence = 0.3F;

/// The distance in image heights, the same for equal lengths across and up.
/// `aspect`: width of the frame divided by its height.
double distance(Position a, Position b, double aspect);

/// Measures a hand. None when wrist, thumb tip, index tip or middle knuckle was not seen.
std::optional<Reading> reading(const platform::HandObservation& observation, double aspect);

/// True when the hand is held open with all five fingers apart. A hand that pinches never is.
bool isSpread(const Reading& reading, double aspect);

}  // namespace hand
