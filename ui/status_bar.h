#pragma once

#include <QWidget>

#include "model/app_model.h"
#include "ui/text_label.h"

namespace ui {

/// What the status bar says about the camera and the hand.
QString statusText(const model::CameraState& cameraState, const std::string& handStatus);

/// The row beneath the drawing area: the status, and how to paint.
class StatusBar final : public QWidget {
 public:
  explicit StatusBar(model::AppModel& model, QWidget* parent = nullptr);

  /// Shows the model's present values.
  void refresh();

 private:
  model::AppModel& model_;
  TextLabel* status_;
};

}  // namespace ui
