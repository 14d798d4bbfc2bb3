#pragma once

#include <memory>

#include "platform/capture_session.h"
#include "platform/gstreamer/camera_catalog.h"

namespace platform::gstreamer {

/// The cameras of the desktop, read through GStreamer. Outlives its sessions and devices.
class GstCaptureService final : public CaptureService {
 public:
  std::unique_ptr<CaptureSession> makeSession() override;
  /// The first call takes longer: it loads GStreamer.
  std::unique_ptr<CaptureDevice> defaultVideoDevice() override;

 private:
  CameraCatalog catalog_;
};

}  // namespace platform::gstreamer
