#pragma once

#include <QSlider>

namespace ui {

/// A horizontal slider over a range of real numbers. A press on its groove takes the handle there;
/// the wheel is left to whatever scrolls around it.
class Slider final : public QSlider {
  Q_OBJECT

 public:
  /// `stepsPerUnit`: how many positions lie between an amount and the next whole one. 1 gives whole
  /// amounts, more than the slider has pixels a continuous range.
  Slider(double minimum, double maximum, int stepsPerUnit, QWidget* parent = nullptr);

  double amount() const { return amountAt(value()); }
  /// Shows `amount`, at the nearest position inside the range; emits nothing.
  void setAmount(double amount);

 signals:
  /// The person moved the slider to `amount`.
  void amountChosen(double amount);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  double amountAt(int position) const;

  const int stepsPerUnit_;
};

}  // namespace ui
