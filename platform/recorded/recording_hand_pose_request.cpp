#include "platform/recorded/recording_hand_pose_request.h"

#include "platform/recorded/hand_log.h"

namespace platform {

Result<std::vector<HandObservation>> RecordingHandPoseRequest::perform(
    const pixels::PixelBuffer& frame) {
  Result<std::vector<HandObservation>> answer = detector_.perform(frame);
  log_ << toLine({frame.time, answer}) << '\n';
  return answer;
}

}  // namespace platform
