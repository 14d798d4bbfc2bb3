#pragma once

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

/// How the other hand is held.
enum class OtherHand { spread, idle };

/// What the painter does at one frame. The right hand writes, the left one changes the colour.
struct Moment {
  WritingHand right;
  OtherHand left = OtherHand::spread;
  double leftRaised = 0;  ///< The left hand: 0 below the picture, 1 up beside the shoulder.
  double headTurned = 0;  ///< Radians to the left.
};

/// One line as the painter means it.
struct PlannedStroke {
  std::string name;  ///< The letter, or what it is.
  int colorIndex = 0;
  std::vector<strokes::Point> points;  ///< One a frame while the pen is down.
};

/// Frames from `first` to before `end`.
struct Span {
  int first = 0;
  int end = 0;
};

/// A painter's performance, frame by frame.
struct Performance {
  std::vector<Moment> moments;
  std::vector<PlannedStroke> strokes;
  std::vector<Span> colorChanges;  ///< From the hand's rising to its going down.
  std::vector<Span> rests;         ///< The pinched hand is held still.
};

}  // namespace sample_clip
