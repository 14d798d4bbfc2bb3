#include "model/app_model.h"

#include <utility>

namespace model {

AppModel::AppModel(const platform::Services& services)
    : services_(services),
      recorder_(services.clock, services.timers, services.mainQueue, services.videoWriters) {
  recorder_.setOnFailure(
      [this](const std::string& message) { finishRecordingAfterFailure(message); });
}

double AppModel::canvasAspect() const {
  return 16.0 / 9.0;
}

void AppModel::undo() {
  store_.undo();
  publishStrokeCount();
}

void AppModel::clear() {
  store_.clear();
  publishStrokeCount();
}

void AppModel::useMouseOnly() {
  cameraState_.set({CameraState::Kind::mouseOnly, {}});
}

void AppModel::dismissError() {
  errorMessage_.set(std::nullopt);
  errorDetails_.set(std::nullopt);
}

void AppModel::publishStrokeCount() {
  strokeCount_.setIfChanged(static_cast<int>(store_.strokes().size()));
}

void AppModel::report(std::string message, std::optional<std::string> details) {
  errorMessage_.set(std::move(message));
  errorDetails_.set(std::move(details));
}

}  // namespace model
