#include "tools/detect_hands/clip.h"

namespace tools {

platform::Result<void> forEachFrame(const std::filesystem::path& clip, const ShowFrame&) {
  return platform::Error{"Cannot read " + clip.string() + ": built without GStreamer."};
}

}  // namespace tools
