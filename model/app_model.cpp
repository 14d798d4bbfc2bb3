#include "model/app_model.h"

#include <utility>

#include "platform/activation.h"
#include "platform/main_queue.h"

namespace model {

AppModel::AppModel(const platform::Services& services)
    : services_(services),
      tracker_(services.handPoseRequest),
      visionQueue_(services.queues.make("wavescribe.vision")),
      camera_(services.captureService, services.queues),
      recorder_(services.clock, services.timers, services.mainQueue, services.videoWriters) {
  tracker_.setColorHand(colorHand());
  services_.activation.setOnBecameActive(whileAlive([this] {
    using Kind = CameraState::Kind;
    const Kind kind = cameraState().kind;
    if (kind == Kind::denied || kind == Kind::restricted) refreshPermission();
  }));
  recorder_.setOnFailure(
      [this](const std::string& message) { finishRecordingAfterFailure(message); });
}

void AppModel::setColorHand(hand::ColorHand hand) {
  colorHand_.set(hand);
  tracker_.setColorHand(colorHand());
}

double AppModel::canvasAspect() const {
  constexpr double kWithoutPicture = 16.0 / 9.0;
  if (cameraState().kind != CameraState::Kind::running) return kWithoutPicture;
  const auto picture = hub_.image();
  if (!picture || picture->height() < 1) return kWithoutPicture;
  return static_cast<double>(picture->width()) / picture->height();
}

void AppModel::undo() {
  store_.undo();
  publishStrokeCount();
}

void AppModel::clear() {
  store_.clear();
  publishStrokeCount();
}

void AppModel::dismissError() {
  errorMessage_.set(std::nullopt);
  errorDetails_.set(std::nullopt);
}

std::function<void()> AppModel::whileAlive(std::function<void()> work) const {
  return [life = std::weak_ptr(life_), work = std::move(work)] {
    if (!life.expired()) work();
  };
}

void AppModel::postToMain(std::function<void()> work) const {
  services_.mainQueue.post(whileAlive(std::move(work)));
}

void AppModel::publishStrokeCount() {
  strokeCount_.setIfChanged(static_cast<int>(store_.strokes().size()));
}

void AppModel::report(std::string message, std::optional<std::string> details) {
  errorMessage_.set(std::move(message));
  errorDetails_.set(std::move(details));
}

}  // namespace model
