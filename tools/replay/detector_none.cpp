#include "tools/replay/detector.h"

namespace replay {

std::unique_ptr<platform::HandPoseRequest> makeDetector() {
  return nullptr;
}

}  // namespace replay
