#pragma once

#include "model/app_model.h"
#include "ui/choice_dialog.h"

namespace ui {

/// Asks before the painting is cleared. Shown while the model's showClearConfirm is true.
class ClearConfirmation final : public ChoiceDialog {
 public:
  ClearConfirmation(model::AppModel& model, QWidget* parent);

  /// Opens or closes as the model says.
  void refresh() { setShown(model_.showClearConfirm()); }

 private:
  model::AppModel& model_;
};

}  // namespace ui
