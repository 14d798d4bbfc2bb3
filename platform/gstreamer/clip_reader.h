#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "pixels/pixel_buffer.h"
#include "platform/gstreamer/gst_handle.h"
#include "platform/result.h"

namespace platform::gstreamer {

/// Reads the pictures of a file: those of a video, or the one of a picture. One thread at a time.
class ClipReader {
 public:
  /// Fails when the file cannot be opened or nothing on this machine decodes it.
  static Result<std::unique_ptr<ClipReader>> open(const std::filesystem::path& path);

  ~ClipReader();
  ClipReader(const ClipReader&) = delete;
  ClipReader& operator=(const ClipReader&) = delete;

  /// The next frame, with its time in seconds from the clip's beginning; none at the end.
  Result<std::optional<pixels::PixelBuffer>> next();

 private:
  ClipReader(Handle<GstElement> pipeline, Handle<GstElement> sink);

  Handle<GstElement> pipeline_;
  Handle<GstElement> sink_;
};

}  // namespace platform::gstreamer
