#include "platform/gstreamer/gst_capture_service.h"

#include <utility>

#include "platform/gstreamer/camera_pipeline.h"
#include "platform/gstreamer/gst_camera_input.h"
#include "platform/gstreamer/gst_capture_session.h"
#include "platform/gstreamer/patience.h"

namespace platform::gstreamer {
namespace {

class GstCaptureDevice final : public CaptureDevice {
 public:
  explicit GstCaptureDevice(Camera camera) : camera_(std::move(camera)) {}

  std::string displayName() const override { return camera_.displayName(); }

  Result<std::unique_ptr<CaptureInput>> open() override {
    const auto opened =
        within(kPatience, [camera = camera_] { return CameraPipeline::probe(camera); });
    if (!opened) return Error{camera_.displayName() + " does not answer."};
    if (!*opened) return opened->error();
    return std::unique_ptr<CaptureInput>(std::make_unique<GstCameraInput>(camera_));
  }

 private:
  const Camera camera_;
};

}  // namespace

std::unique_ptr<CaptureSession> GstCaptureService::makeSession() {
  return std::make_unique<GstCaptureSession>(catalog_);
}

std::unique_ptr<CaptureDevice> GstCaptureService::defaultVideoDevice() {
  if (!gst_init_check(nullptr, nullptr, nullptr)) return nullptr;
  auto camera = catalog_.defaultCamera();
  if (!camera) return nullptr;
  return std::make_unique<GstCaptureDevice>(std::move(*camera));
}

}  // namespace platform::gstreamer
