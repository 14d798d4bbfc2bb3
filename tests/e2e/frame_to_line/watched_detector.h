#pragma once

#include <vector>

#include "platform/hand_pose_request.h"
#include "tests/e2e/frame_to_line/timeline.h"
#include "tests/e2e/frame_to_line/watched_queues.h"

namespace frame_to_line {

/// Passes on what a detector says and notes when the frames were captured.
class WatchedDetector final : public platform::HandPoseRequest {
 public:
  WatchedDetector(platform::HandPoseRequest& detector, Timeline& timeline)
      : detector_(detector), timeline_(timeline) {}

  platform::Result<std::vector<platform::HandObservation>> perform(
      const pixels::PixelBuffer& frame) override {
    timeline_.frameCaptured(WatchedQueues::current(), frame.time);
    return detector_.perform(frame);
  }

 private:
  platform::HandPoseRequest& detector_;
  Timeline& timeline_;
};

}  // namespace frame_to_line
