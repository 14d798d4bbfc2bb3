#include "ui/clear_confirmation.h"

namespace ui {

ClearConfirmation::ClearConfirmation(model::AppModel& model, QWidget* parent)
    : ChoiceDialog(QStringLiteral("Clear the painting?"),
                   QStringLiteral("This removes every stroke."), parent),
      model_(model) {
  addAnswer(QStringLiteral("Clear"), Role::destructive, [this] { model_.clear(); });
  addCancel(QStringLiteral("Cancel"));
  connect(this, &QDialog::finished, this, [this] { model_.setShowClearConfirm(false); });
}

}  // namespace ui
