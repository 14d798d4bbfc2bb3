#pragma once

#include <utility>
#include <vector>

#include "platform/hand_pose_request.h"
#include "platform/recorded/hand_log.h"

namespace platform {

/// A detector that repeats what another one once said about the same frames.
class RecordedHandPoseRequest final : public HandPoseRequest {
 public:
  /// `log`: in the order of its times.
  explicit RecordedHandPoseRequest(std::vector<HandLogEntry> log) : log_(std::move(log)) {}

  /// Answers with the entry of the frame's time, to a millisecond; fails when there is none.
  Result<std::vector<HandObservation>> perform(const pixels::PixelBuffer& frame) override;

 private:
  const std::vector<HandLogEntry> log_;
};

}  // namespace platform
