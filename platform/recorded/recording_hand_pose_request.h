#pragma once

#include <ostream>
#include <vector>

#include "platform/hand_pose_request.h"

namespace platform {

/// Asks another detector and writes down what it says, one line of a hand log a frame.
class RecordingHandPoseRequest final : public HandPoseRequest {
 public:
  /// Both outlive the request.
  RecordingHandPoseRequest(HandPoseRequest& detector, std::ostream& log)
      : detector_(detector), log_(log) {}

  Result<std::vector<HandObservation>> perform(const pixels::PixelBuffer& frame) override;

 private:
  HandPoseRequest& detector_;
  std::ostream& log_;
};

}  // namespace platform
