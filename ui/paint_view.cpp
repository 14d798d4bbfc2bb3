#include "ui/paint_view.h"

#include <QFocusEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "ui/canvas_geometry.h"

namespace ui {

PaintView::PaintView(model::AppModel& model, platform::TimerFactory& timers, QWidget* parent)
    : QWidget(parent), model_(model), timers_(timers) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::ClickFocus);
  setMouseTracking(true);  // A pointer that moves without a button tells that its release was lost.
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAccessibleName(QStringLiteral("Canvas"));
}

// A window that another program covers or takes the keyboard from still hears of the release of the
// button; a dialog's or a menu's own loop keeps it to itself.
bool PaintView::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusOut:
      if (static_cast<QFocusEvent*>(event)->reason() == Qt::PopupFocusReason) model_.mouseUp();
      break;
    case QEvent::WindowBlocked:
    case QEvent::UngrabMouse:
      model_.mouseUp();
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

void PaintView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (timer_) return;
  timer_ = timers_.repeat(kFrameInterval, [this] {
    model_.tick();
    showWhatChanged();
  });
}

void PaintView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (event->spontaneous()) return;  // Minimised: the model's time goes on.
  timer_.reset();
  model_.mouseUp();
}

void PaintView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const double scale = devicePixelRatioF();
  const QRect place = canvasPixels();
  painter.scale(1 / scale, 1 / scale);  // Pixels go to the screen one to one.
  const QRect whole(QPoint(0, 0), (QSizeF(size()) * scale).toSize());
  for (const QRect& letterbox : QRegion(whole) - place) {
    painter.fillRect(letterbox, palette().window());
  }
  if (place.isEmpty()) return;

  // What the timer has just drawn is new enough; a camera's next frame waits for the next firing.
  if (!std::exchange(isFresh_, false) || place != place_) {
    // Parts of the picture that changed only now may lie outside of what is painted here.
    const QRect changed = toView(drawPicture(place));
    if (!event->rect().contains(changed)) update(changed);
  }
  if (model_.background() == render::CanvasBackground::transparent) {
    painter.fillRect(place, palette().window());
  } else {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
  }
  painter.drawImage(place.topLeft(), picture_);
}

void PaintView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPointF point = normalized(event->position(), canvas());
  model_.mouseDown(point.x(), point.y());
}

void PaintView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) return model_.mouseUp();  // Its release was lost.
  const QPointF point = normalized(event->position(), canvas());
  model_.mouseDragged(point.x(), point.y());
}

void PaintView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) model_.mouseUp();
}

QRectF PaintView::canvas() const {
  return canvasRect(size(), model_.canvasAspect());
}

QRect PaintView::canvasPixels() const {
  const QRectF canvas = this->canvas();
  if (!(canvas.width() > 1 && canvas.height() > 1)) return {};
  return devicePixels(canvas, devicePixelRatioF());
}

void PaintView::showWhatChanged() {
  const QRect place = canvasPixels();
  if (place != place_) {
    update();
  } else if (!place.isEmpty()) {
    const QRect changed = toView(drawPicture(place));
    isFresh_ = !changed.isEmpty();
    update(changed);
  }
}

QRect PaintView::drawPicture(const QRect& place) {
  place_ = place;
  if (picture_.size() != place.size()) {
    picture_ = QImage(place.size(), QImage::Format_ARGB32_Premultiplied);
    picture_.fill(Qt::transparent);
    live_.invalidate();
  }
  const double scale = devicePixelRatioF();
  const pixels::SurfaceView pixels{picture_.bits(), place.width(), place.height(),
                                   static_cast<std::size_t>(picture_.bytesPerLine())};
  const render::PixelRect changed =
      live_
          .draw(model_.makeScene(model_.background(), true), {pixels, scale},
                {place.width() / scale, place.height() / scale})
          .changed;
  if (changed.isEmpty()) return {};
  return QRect(changed.left, changed.top, changed.width(), changed.height())
      .translated(place.topLeft());
}

QRect PaintView::toView(const QRect& devicePixels) const {
  if (devicePixels.isEmpty()) return {};
  const double scale = devicePixelRatioF();
  return QRectF(devicePixels.x() / scale, devicePixels.y() / scale, devicePixels.width() / scale,
                devicePixels.height() / scale)
      .toAlignedRect();
}

}  // namespace ui
