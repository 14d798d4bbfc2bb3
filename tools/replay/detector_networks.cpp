#include "platform/handpose/hand_pose_detector.h"
#include "tools/replay/detector.h"

namespace replay {

std::unique_ptr<platform::HandPoseRequest> makeDetector() {
  return std::make_unique<platform::handpose::HandPoseDetector>();
}

}  // namespace replay
