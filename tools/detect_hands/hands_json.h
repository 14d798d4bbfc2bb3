#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/handpose/hand_track.h"

namespace tools {

/// What was found in one picture, or in one frame of a clip.
struct PictureHands {
  std::string name;            ///< The picture's or the clip's path.
  std::optional<double> time;  ///< Seconds into the clip.
  int width = 0;
  int height = 0;
  double milliseconds = 0;  ///< Processor time that the detector took.
  std::vector<platform::handpose::TrackedHand> hands;
};

/// One line without its end. The joints as they are in `found`, in shares of the picture, upwards.
std::string jsonLine(const PictureHands& found);

}  // namespace tools
