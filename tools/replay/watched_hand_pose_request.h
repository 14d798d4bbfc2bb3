#pragma once

#include <optional>
#include <vector>

#include "platform/hand_pose_request.h"

namespace replay {

/// Passes on what a detector says and remembers it, with the time it took.
class WatchedHandPoseRequest final : public platform::HandPoseRequest {
 public:
  struct Answer {
    platform::Result<std::vector<platform::HandObservation>> hands;
    double milliseconds = 0;
  };

  /// `detector` outlives the request.
  explicit WatchedHandPoseRequest(platform::HandPoseRequest& detector) : detector_(detector) {}

  platform::Result<std::vector<platform::HandObservation>> perform(
      const pixels::PixelBuffer& frame) override;

  /// The answer of the latest frame; none since it was taken before.
  std::optional<Answer> takeAnswer();

 private:
  platform::HandPoseRequest& detector_;
  std::optional<Answer> answer_;
};

}  // namespace replay
