#pragma once

#include <optional>
#include <string>
#include <vector>

#include "strokes/stroke_point.h"

namespace sample_clip {

constexpr double kFramesPerSecond = 30;
constexpr double kAspect = 16.0 / 9;

/// Gaps between thumb and index finger as shares of the hand's size.
constexpr double kOpen = 0.85;
constexpr double kPinched = 0.12;

/// The hand that writes, in canvas coordinates as the painter sees them in the mirror.
struct WritingHand {
  strokes::Point pen;  ///< Middle between thumb tip and index tip.
  double opening = 1;  ///< Gap between the two as a share of the hand's size.
  double size = 0.13;  ///< Wrist to middle knuckle, in canvas heights.
};

/// What the painter does at one frame. The right hand writes, the left one changes the colour.
struct Moment {
  WritingHand right;
  double leftRaised = 0;  ///< The open left hand: 0 below the picture, 1 up beside the shoulder.
};

/// One line as the painter means it.
struct PlannedStroke {
  std::string name;  ///< The letter, or what it is.
  int colorIndex = 0;
  std::vector<strokes::Point> points;  ///< One a frame while the pen is down.
};

/// A painter's performance, frame by frame: the word "ahoy" in the air, two letters of it in one
/// colour and two in the next, then a wave above it while moving nearer to the camera.
struct Performance {
  std::vector<Moment> moments;
  std::vector<PlannedStroke> strokes;
};

Performance perform();

}  // namespace sample_clip
