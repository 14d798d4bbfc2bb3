#include "capture/camera_source.h"

#include <utility>

namespace capture {

using platform::CapturePreset;

CameraSource::CameraSource(platform::CaptureService& service, platform::SerialQueueFactory& queues)
    : service_(service),
      outputQueue_(queues.make("wavescribe.camera.frames")),
      session_(service.makeSession()),
      sessionQueue_(queues.make("wavescribe.camera.session")) {
  watchSession();
}

CameraSource::~CameraSource() {
  session_->setEvents({});  // Which post to the session queue.
}

void CameraSource::start() {
  sessionQueue_->post([this] { configureAndRun(); });
}

void CameraSource::configureAndRun() {
  configured_ = configured_ || configure();
  if (configured_ && !session_->isRunning()) session_->start();
}

// What a failed attempt has done to the session stays; the next attempt goes over it again.
bool CameraSource::configure() {
  const std::unique_ptr<platform::CaptureDevice> device = service_.defaultVideoDevice();
  if (!device) {
    onError_("No camera was found.", "AVCaptureDevice.default(for: .video) returned nil.");
    return false;
  }
  auto input = device->open();
  if (!input) {
    onError_("The camera could not be opened.", input.error().description);
    return false;
  }
  if (session_->canUse(CapturePreset::hd1280x720, *input.value())) {
    session_->use(CapturePreset::hd1280x720);
  }
  if (!session_->canAddInput(*input.value())) {
    onError_("The camera could not be used.",
             "AVCaptureSession.canAddInput returned false for " + device->displayName() + ".");
    return false;
  }
  session_->addInput(std::move(input).value());
  if (!session_->canAddOutput()) {
    onError_("The camera picture could not be read.",
             "AVCaptureSession.canAddOutput returned false.");
    return false;
  }
  session_->addOutput(*outputQueue_, [this](const auto& sample) { captureOutput(sample); });
  return true;
}

// What is told may be outdated by the time it is heard: a start may have come in between.
void CameraSource::watchSession() {
  const auto whileStopped = [this](auto tell) {
    sessionQueue_->post([this, tell] {
      if (!session_->isRunning()) tell();
    });
  };
  session_->setEvents(
      {.failedToStart =
           [this, whileStopped](const std::string& detail) {
             whileStopped([this, detail] { onError_("The camera could not be opened.", detail); });
           },
       .stopped =
           [this, whileStopped](const std::string& detail) {
             whileStopped([this, detail] { onError_("The camera stopped.", detail); });
           },
       .returned = [this, whileStopped] { whileStopped([this] { onReturn_(); }); }});
}

void CameraSource::captureOutput(const std::optional<pixels::PixelBuffer>& sample) {
  if (sample) onFrame_(*sample, sample->time);
}

}  // namespace capture
