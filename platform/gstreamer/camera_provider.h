#pragma once

#include <gst/gst.h>

#include <optional>

#include "platform/gstreamer/camera.h"
#include "platform/gstreamer/gst_handle.h"

namespace platform::gstreamer {

/// The cameras that one part of the system knows, kept up to date by GStreamer. One thread at a
/// time.
class CameraProvider {
 public:
  /// `factory`: GStreamer's name for it, as "v4l2deviceprovider". Knows nothing when its plug-in is
  /// missing or its service does not answer.
  explicit CameraProvider(const char* factory);
  /// Leaves the service.
  ~CameraProvider();
  CameraProvider(const CameraProvider&) = delete;
  CameraProvider& operator=(const CameraProvider&) = delete;

  /// Whether the service has answered.
  bool isStarted() const { return provider_ != nullptr; }

  /// The camera of the highest session priority; among equals the first video device.
  std::optional<Camera> firstCamera() const;

  bool lists(const Camera& camera) const;

  /// Keeps the service until the end of the process.
  void abandon();

 private:
  Handle<GstDeviceProvider> provider_;  // Null, or started.
};

}  // namespace platform::gstreamer
