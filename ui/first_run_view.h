#pragma once

#include <QPushButton>
#include <QWidget>

#include "model/app_model.h"
#include "ui/text_label.h"

namespace ui {

/// Greets the person and settles the question of the camera, over a window that shows through only
/// faintly. Shows itself while the camera's state asks for it. The Return key presses the default
/// button of the state.
class FirstRunView final : public QWidget {
  Q_OBJECT

 public:
  /// `model` outlives this.
  explicit FirstRunView(model::AppModel& model, QWidget* parent = nullptr);

  /// Whether the view is shown in that state.
  static bool belongsTo(const model::CameraState& state);

  void refresh();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeCard();
  QLayout* makePrivacyList();
  QLayout* makeButtons();
  void pressDefault();

  model::AppModel& model_;
  TextLabel* message_ = nullptr;
  QPushButton* allow_ = nullptr;
  QPushButton* openSettings_ = nullptr;
  QPushButton* mouseOnly_ = nullptr;
  QPushButton* default_ = nullptr;  // One of them, while the view is shown.
};

}  // namespace ui
