#pragma once

#include <memory>

#include "platform/hand_pose_request.h"

namespace replay {

/// The program's own detector; null in a build without the networks.
std::unique_ptr<platform::HandPoseRequest> makeDetector();

}  // namespace replay
