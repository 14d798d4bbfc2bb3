#include "ui/swatch.h"

#include <QPainter>

namespace ui {
namespace {

QString nameOf(const strokes::PaletteColor& color) {
  return QString::fromUtf8(color.name.data(), static_cast<qsizetype>(color.name.size()));
}

}  // namespace

Swatch::Swatch(const strokes::PaletteColor& color, QWidget* parent)
    : QAbstractButton(parent), color_(color) {
  setCheckable(true);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setToolTip(nameOf(color));
  setChosen(false);
}

void Swatch::setChosen(bool isChosen) {
  setChecked(isChosen);
  setAccessibleName(isChosen ? nameOf(color_) + QStringLiteral(", chosen") : nameOf(color_));
}

QSize Swatch::sizeHint() const {
  const int side = kDiameter + 2 * kRingRoom;
  return {side, side};
}

void Swatch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF circle = QRectF(rect()).adjusted(kRingRoom, kRingRoom, -kRingRoom, -kRingRoom);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgbF(static_cast<float>(color_.r), static_cast<float>(color_.g),
                                    static_cast<float>(color_.b)));
  painter.drawEllipse(circle);
  painter.setBrush(Qt::NoBrush);
  if (isChecked()) {
    painter.setPen(QPen(palette().color(QPalette::WindowText), kRingWidth));
    painter.drawEllipse(circle);
  }
  painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, 0.3F), 1));
  painter.drawEllipse(circle);
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawEllipse(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75));
  }
}

}  // namespace ui
