#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "hand/hand_output.h"
#include "platform/hand_pose_request.h"
#include "platform/result.h"

namespace replay {

/// How long the parts of one frame's road took, milliseconds.
struct StageTimes {
  double decode = 0;  ///< From the clip to pixels.
  double detect = 0;  ///< Finding the hands.
  double model = 0;   ///< From the hands to strokes, and the timers.
  double draw = 0;    ///< From the strokes to a picture of the canvas, in the clip's size.
};

/// What one frame of a replay brought about.
struct TraceLine {
  int frame = 0;    ///< From 0.
  double time = 0;  ///< Seconds from the clip's beginning.
  /// None when the frame was not analysed.
  std::optional<platform::Result<std::vector<platform::HandObservation>>> hands;
  hand::HandOutput output;
  std::string status;
  int colorIndex = 0;
  int strokeCount = 0;
  StageTimes milliseconds;
};

/// Writes one JSON object and the line's end.
void write(const TraceLine& line, std::ostream& out);

}  // namespace replay
