#include "tools/replay/watched_hand_pose_request.h"

#include <utility>

#include "tools/replay/stopwatch.h"

namespace replay {

platform::Result<std::vector<platform::HandObservation>> WatchedHandPoseRequest::perform(
    const pixels::PixelBuffer& frame) {
  const Stopwatch stopwatch;
  auto hands = detector_.perform(frame);
  answer_ = Answer{hands, stopwatch.milliseconds()};
  return hands;
}

std::optional<WatchedHandPoseRequest::Answer> WatchedHandPoseRequest::takeAnswer() {
  return std::exchange(answer_, std::nullopt);
}

}  // namespace replay
