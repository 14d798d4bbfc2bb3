#pragma once

#include <vector>

#include "pixels/image.h"
#include "platform/handpose/hand_box.h"
#include "platform/handpose/hand_crop.h"
#include "platform/handpose/letterbox.h"
#include "platform/result.h"

namespace platform::handpose {

/// Something in a picture that may be a hand.
struct HandCandidate {
  HandBox box;
  double score = 0;  ///< Probability that a hand is there.
  double right = 0;  ///< Probability that it is a right hand.
};

/// What a closer look at one place tells.
struct HandReading {
  Landmarks landmarks;  ///< Picture pixels, plain convention.
  double presence = 0;  ///< Probability that there is a hand in the middle of the crop.
  double right = 0;     ///< Probability that it is a right hand.
};

/// The two looks at a picture from which hands are followed. Calls must not overlap.
class HandVision {
 public:
  virtual ~HandVision() = default;
  /// Looks for hands in a region; the best first, each place once.
  virtual Result<std::vector<HandCandidate>> find(const pixels::Image& picture,
                                                  const Region& region) = 0;
  /// Reads the hand in a crop. What it says means nothing where there is none.
  virtual Result<HandReading> read(const pixels::Image& picture, const HandCrop& crop) = 0;
};

}  // namespace platform::handpose
