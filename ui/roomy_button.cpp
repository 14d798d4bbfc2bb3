#include "ui/roomy_button.h"

namespace ui {
namespace {

constexpr QSize kAir(12, 4);

}  // namespace

RoomyButton::RoomyButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  setFocusPolicy(Qt::TabFocus);
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize RoomyButton::sizeHint() const {
  return QPushButton::sizeHint() + kAir;
}

}  // namespace ui
