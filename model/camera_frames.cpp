#include "model/app_model.h"
#include "platform/main_queue.h"

namespace model {

using Kind = CameraState::Kind;

void AppModel::startCamera() {
  camera_.setOnFrame(
      [this](const pixels::PixelBuffer& frame, double time) { processFrame(frame, time); });
  camera_.setOnError([this](const std::string& message, const std::string& details) {
    postToMain([this, message, details] { cameraFailed(message, details); });
  });
  camera_.setOnReturn([this] { postToMain([this] { cameraReturned(); }); });
  camera_.start();
  cameraState_.set({Kind::running, {}});
}

void AppModel::cameraFailed(const std::string& message, const std::string& details) {
  cameraState_.set(CameraState::failed(message));
  report(message, details);
}

// By the same road as after a refusal, because the permission may be another one by now.
void AppModel::cameraReturned() {
  if (cameraState().kind != Kind::failed) return;
  if (errorMessage() == cameraState().message) dismissError();
  refreshPermission();
}

// On the queue of the camera's frames.
void AppModel::processFrame(const pixels::PixelBuffer& frame, double time) {
  hub_.update(frame);
  if (!visionBusy_.tryClaim()) return;
  visionQueue_->post([this, frame, time] {
    const hand::HandOutput output = tracker_.process(frame, time);
    // Before the result is applied, so that the next frame need not wait for the main thread.
    visionBusy_.release();
    postToMain([this, output] { apply(output); });
  });
}

}  // namespace model
