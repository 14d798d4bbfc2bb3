#pragma once

#include <QImage>
#include <QWidget>
#include <memory>

#include "model/app_model.h"
#include "platform/timer_factory.h"
#include "render/live_canvas.h"

namespace ui {

/// Shows the painting and lets the mouse, or a tablet's pen, draw in it. While it is shown it ticks
/// the model 30 times a second and paints what has changed; the canvas sits in the middle, around
/// it the window's colour.
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
  /// Where the canvas lies, in device pixels; empty when there is no room for one.
  QRect canvasPixels() const;
  void showWhatChanged();
  /// Brings `picture_` up to the model's scene. `place`: canvasPixels(). Where it changed, in the
  /// view's device pixels.
  QRect drawPicture(const QRect& place);
  /// In points, grown to whole ones.
  QRect toView(const QRect& devicePixels) const;

  model::AppModel& model_;
  platform::TimerFactory& timers_;
  std::unique_ptr<platform::RepeatingTimer> timer_;  // While the view is shown.
  render::LiveCanvas live_;
  QImage picture_;        // The canvas, kept from frame to frame.
  QRect place_;           // Where it was last drawn for, in device pixels.
  bool isFresh_ = false;  // The timer has drawn it and it has not been painted since.
};

}  // namespace ui
