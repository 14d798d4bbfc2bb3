#include "ui/slider.h"

#include <QMouseEvent>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>

namespace ui {
namespace {

int positionOf(double amount, int stepsPerUnit) {
  return static_cast<int>(std::lround(amount * stepsPerUnit));
}

}  // namespace

Slider::Slider(double minimum, double maximum, int stepsPerUnit, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), stepsPerUnit_(stepsPerUnit) {
  setRange(positionOf(minimum, stepsPerUnit), positionOf(maximum, stepsPerUnit));
  const int span = this->maximum() - this->minimum();
  setSingleStep(std::max(1, span / 50));
  setPageStep(std::max(1, span / 10));
  connect(this, &QSlider::valueChanged, this,
          [this](int position) { emit amountChosen(amountAt(position)); });
}

void Slider::setAmount(double amount) {
  const double pinned = std::clamp(amount, amountAt(minimum()), amountAt(maximum()));
  const QSignalBlocker quiet(this);
  setValue(positionOf(pinned, stepsPerUnit_));
}

void Slider::mousePressEvent(QMouseEvent* event) {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const auto part = [&](QStyle::SubControl control) {
    return style()->subControlRect(QStyle::CC_Slider, &option, control, this);
  };
  const QRect handle = part(QStyle::SC_SliderHandle);
  const QPoint press = event->position().toPoint();
  if (event->button() == Qt::LeftButton && !handle.contains(press)) {
    const QRect groove = part(QStyle::SC_SliderGroove);
    setValue(QStyle::sliderValueFromPosition(minimum(), maximum(),
                                             press.x() - groove.x() - handle.width() / 2,
                                             groove.width() - handle.width(), option.upsideDown));
  }
  QSlider::mousePressEvent(event);
}

void Slider::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

double Slider::amountAt(int position) const {
  return static_cast<double>(position) / stepsPerUnit_;
}

}  // namespace ui
