#pragma once

#include <QWidget>
#include <vector>

#include "model/app_model.h"
#include "ui/recording_indicator.h"
#include "ui/roomy_button.h"
#include "ui/swatch.h"

namespace ui {

/// The row above the drawing area: the palette, and the tools as buttons.
class TopBar final : public QWidget {
 public:
  explicit TopBar(model::AppModel& model, QWidget* parent = nullptr);

  /// Shows the model's present values.
  void refresh();

 private:
  QLayout* makePalette();
  void refreshRecording();
  template <class Action>
  RoomyButton* makeButton(const QString& title, const QString& symbol, Action action);

  model::AppModel& model_;
  std::vector<Swatch*> swatches_;
  RecordingIndicator* indicator_;
  RoomyButton* undo_;
  RoomyButton* clear_;
  RoomyButton* record_;
};

}  // namespace ui
