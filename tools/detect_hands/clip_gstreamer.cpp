#include "platform/gstreamer/clip_reader.h"
#include "tools/detect_hands/clip.h"

namespace tools {

platform::Result<void> forEachFrame(const std::filesystem::path& clip, const ShowFrame& show) {
  const auto reader = platform::gstreamer::ClipReader::open(clip);
  if (!reader) return reader.error();
  while (true) {
    const auto frame = reader.value()->next();
    if (!frame) return frame.error();
    if (!frame.value()) return {};
    if (!frame.value()->image) continue;
    if (auto shown = show(*frame.value()->image, frame.value()->time); !shown) return shown;
  }
}

}  // namespace tools
