#pragma once

#include "platform/handpose/landmarks.h"

namespace platform::handpose {

/// Where a hand is, how large and how it is turned: a square that stands upright with the hand.
struct HandBox {
  Point centre;      ///< Picture pixels.
  double size = 0;   ///< Side of the square in picture pixels.
  double angle = 0;  ///< Radians by which the hand is turned clockwise as seen; 0: fingers up.

  friend bool operator==(const HandBox&, const HandBox&) = default;
};

/// The box of all joints (plain places), upright along wrist to middle MCP.
HandBox boxOf(const Landmarks& hand);

/// True when the two can hardly be two hands: about the same place, about the same size.
bool coverSameHand(const HandBox& a, const HandBox& b);

}  // namespace platform::handpose
