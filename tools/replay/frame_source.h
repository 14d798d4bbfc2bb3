#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "pixels/pixel_buffer.h"
#include "platform/result.h"

namespace replay {

/// The frames that the camera of a replay sees, in order.
class FrameSource {
 public:
  virtual ~FrameSource() = default;
  /// The next frame, with its time in seconds from the beginning; none at the end.
  virtual platform::Result<std::optional<pixels::PixelBuffer>> next() = 0;
};

/// The frames of a video, or of a folder of pictures in the order of the numbers in their names,
/// 30 a second.
platform::Result<std::unique_ptr<FrameSource>> openFrames(const std::filesystem::path& path);

}  // namespace replay
