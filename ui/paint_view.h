#pragma once

#include <QImage>
#include <QWidget>
#include <memory>

#include "model/app_model.h"
#include "platform/timer_factory.h"

namespace ui {

/// Shows the painting and lets the mouse, or a tablet's pen, draw in it. While it is shown it ticks
/// the model and draws 30 times a second; the canvas sits in the middle, around it the window's
/// colour.
class PaintView final : public QWidget {
 public:
  /// Seconds between two pictures.
  static constexpr double kFrameInterval = 1.0 / 30.0;

  /// `model` and `timers` outlive this.
  PaintView(model::AppModel& model, platform::TimerFactory& timers, QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QRectF canvas() const;
  /// Draws the model's scene into `picture_`, which gets `size` device pixels.
  void drawPicture(QSize size);

  model::AppModel& model_;
  platform::TimerFactory& timers_;
  std::unique_ptr<platform::RepeatingTimer> timer_;  // While the view is shown.
  QImage picture_;                                   // The canvas, kept from frame to frame.
};

}  // namespace ui
