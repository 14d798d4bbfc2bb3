#include "ui/status_bar.h"

#include <QHBoxLayout>

namespace ui {

QString statusText(const model::CameraState& cameraState, const std::string& handStatus) {
  using Kind = model::CameraState::Kind;
  switch (cameraState.kind) {
    case Kind::checking:
    case Kind::needsPermission:
    case Kind::denied:
    case Kind::restricted:
      return QStringLiteral("Camera off");
    case Kind::running:
      return QStringLiteral("Hand: ") + QString::fromStdString(handStatus);
    case Kind::mouseOnly:
      return QStringLiteral("Mouse only");
    case Kind::failed:
      return QString::fromStdString(cameraState.message);
  }
  Q_UNREACHABLE();
}

StatusBar::StatusBar(model::AppModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  status_ = new TextLabel({}, TextStyle::callout, TextColor::secondary, this);
  status_->setWordWrap(true);
  auto* hint = new TextLabel(
      QStringLiteral("Pinch thumb and finger to draw. Open your hand to stop. Mouse works too."),
      TextStyle::caption, TextColor::secondary, this);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(10, 6, 10, 6);
  row->addWidget(status_, 1);
  row->addWidget(hint);
  refresh();
}

void StatusBar::refresh() {
  status_->setText(statusText(model_.cameraState(), model_.handStatus()));
}

}  // namespace ui
