#pragma once

#include <mutex>
#include <vector>

#include "hand/color_hand.h"
#include "hand/hand_output.h"
#include "hand/one_euro_filter.h"
#include "hand/reading.h"
#include "pixels/pixel_buffer.h"
#include "platform/hand_pose_request.h"

namespace hand {

/// Follows the hands through the camera's frames: which hand is the pen, where it is, whether it
/// pinches, and whether the other one asks for a new colour.
class HandTracker {
 public:
  /// Thumb and index finger closer than this share of the hand's size put the pen down, ...
  static constexpr double kPinchOn = 0.3;
  /// ... and farther apart than this lift it; in between it stays as it is.
  static constexpr double kPinchOff = 0.5;

  /// `request` outlives the tracker.
  explicit HandTracker(platform::HandPoseRequest& request) : request_(request) {}

  /// Analyses one frame. `time`: its capture time in seconds, which the filters run on. A frame
  /// without a pen hand lifts the pen, and the next one starts it unsmoothed.
  /// One thread at a time; any other may set the colour hand meanwhile.
  HandOutput process(const pixels::PixelBuffer& frame, double time);

  /// Which hand changes the colour; the other one is then the pen. Any thread.
  ColorHand colorHand() const;
  void setColorHand(ColorHand hand);

 private:
  PenSample follow(const Reading& penHand, double aspect, double time);
  void liftPen();

  platform::HandPoseRequest& request_;
  OneEuroFilter filterX_{2.0, 10.0};
  OneEuroFilter filterY_{2.0, 10.0};
  OneEuroFilter filterSize_{0.7, 5.0};
  bool pinching_ = false;

  mutable std::mutex lock_;  ///< Guards colorHand_.
  ColorHand colorHand_ = ColorHand::left;
};

}  // namespace hand
