#include "ui/save_choice.h"

namespace ui {

SaveChoice::SaveChoice(model::AppModel& model, QWidget* parent)
    : ChoiceDialog(QStringLiteral("Save image"), {}, parent), model_(model) {
  addAnswer(QStringLiteral("Painting only (transparent PNG)"), Role::normal,
            [this] { model_.saveImage(false); });
  addAnswer(QStringLiteral("With the background picture"), Role::normal,
            [this] { model_.saveImage(true); });
  addCancel(QStringLiteral("Cancel"));
  connect(this, &QDialog::finished, this, [this] { model_.setShowSaveChoice(false); });
}

}  // namespace ui
