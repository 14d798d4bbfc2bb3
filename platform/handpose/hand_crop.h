#pragma once

#include "platform/handpose/hand_box.h"

namespace platform::handpose {

/// A square cut out of a picture so that the hand in it stands upright. Its own coordinates run
/// from 0 at its left and upper edge to 1 at its right and lower edge.
struct HandCrop {
  Point centre;      ///< Picture pixels.
  double side = 0;   ///< Picture pixels, > 0.
  double angle = 0;  ///< Radians clockwise as seen, as the hand's.

  /// The crop in which the landmark network expects a hand: its box with a margin.
  static HandCrop around(const HandBox& box);

  Point toPicture(Point inCrop) const;
  Point toCrop(Point inPicture) const;
};

}  // namespace platform::handpose
