#include "ui/divider.h"

#include <QPainter>

namespace ui {

Divider::Divider(Qt::Orientation direction, QWidget* parent) : QWidget(parent) {
  if (direction == Qt::Horizontal) {
    setFixedHeight(1);
  } else {
    setFixedWidth(1);
  }
}

void Divider::paintEvent(QPaintEvent*) {
  QColor line = palette().color(QPalette::Active, QPalette::WindowText);
  line.setAlphaF(0.16F);
  QPainter(this).fillRect(rect(), line);
}

}  // namespace ui
