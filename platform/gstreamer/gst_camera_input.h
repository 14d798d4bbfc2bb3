#pragma once

#include <utility>

#include "platform/capture_session.h"
#include "platform/gstreamer/camera.h"

namespace platform::gstreamer {

/// A camera that has shown that it opens.
class GstCameraInput final : public CaptureInput {
 public:
  explicit GstCameraInput(Camera camera) : camera_(std::move(camera)) {}
  const Camera& camera() const { return camera_; }

 private:
  const Camera camera_;
};

}  // namespace platform::gstreamer
