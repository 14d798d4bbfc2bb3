#include "platform/recorded/recorded_hand_pose_request.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace platform {
namespace {

constexpr double kSameTimeSeconds = 0.001;

}  // namespace

Result<std::vector<HandObservation>> RecordedHandPoseRequest::perform(
    const pixels::PixelBuffer& frame) {
  const auto entry = std::ranges::lower_bound(log_, frame.time - kSameTimeSeconds, {},
                                              [](const HandLogEntry& e) { return e.time; });
  if (entry == log_.end() || std::abs(entry->time - frame.time) > kSameTimeSeconds) {
    return Error{"No hands were recorded for the frame at " + std::to_string(frame.time) + " s."};
  }
  return entry->answer;
}

}  // namespace platform
