#pragma once

#include "model/app_model.h"
#include "ui/choice_dialog.h"

namespace ui {

/// Asks which kind of picture to save. Shown while the model's showSaveChoice is true.
class SaveChoice final : public ChoiceDialog {
 public:
  SaveChoice(model::AppModel& model, QWidget* parent);

  /// Opens or closes as the model says.
  void refresh() { setShown(model_.showSaveChoice()); }

 private:
  model::AppModel& model_;
};

}  // namespace ui
