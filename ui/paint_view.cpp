#include "ui/paint_view.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>

#include "render/canvas_renderer.h"
#include "ui/canvas_geometry.h"

namespace ui {

PaintView::PaintView(model::AppModel& model, platform::TimerFactory& timers, QWidget* parent)
    : QWidget(parent), model_(model), timers_(timers) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::ClickFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAccessibleName(QStringLiteral("Canvas"));
}

bool PaintView::event(QEvent* event) {
  switch (event->type()) {
    // The release of the button may never arrive after these.
    case QEvent::FocusOut:
    case QEvent::WindowDeactivate:
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
    update();
  });
}

void PaintView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (event->spontaneous()) return;  // Minimised: the model's time goes on.
  timer_.reset();
  model_.mouseUp();
}

void PaintView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF canvas = this->canvas();
  if (!(canvas.width() > 1 && canvas.height() > 1)) {
    painter.fillRect(rect(), palette().window());
    return;
  }
  const double scale = devicePixelRatioF();
  const QRect place = devicePixels(canvas, scale);
  drawPicture(place.size());

  painter.scale(1 / scale, 1 / scale);  // Pixels go to the screen one to one.
  painter.drawImage(place.topLeft(), picture_);
  const QRect whole(QPoint(0, 0), (QSizeF(size()) * scale).toSize());
  for (const QRect& letterbox : QRegion(whole) - place) {
    painter.fillRect(letterbox, palette().window());
  }
}

void PaintView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPointF point = normalized(event->position(), canvas());
  model_.mouseDown(point.x(), point.y());
}

void PaintView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) return;
  const QPointF point = normalized(event->position(), canvas());
  model_.mouseDragged(point.x(), point.y());
}

void PaintView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) model_.mouseUp();
}

QRectF PaintView::canvas() const {
  return canvasRect(size(), model_.canvasAspect());
}

void PaintView::drawPicture(QSize size) {
  // The canvas is opaque by the time it is shown, so its premultiplied pixels are plain ones.
  if (picture_.size() != size) picture_ = QImage(size, QImage::Format_RGB32);
  const render::CanvasBackground background = model_.background();
  if (background == render::CanvasBackground::transparent) {
    picture_.fill(palette().color(QPalette::Window));
  }
  const double scale = devicePixelRatioF();
  const pixels::SurfaceView pixels{picture_.bits(), size.width(), size.height(),
                                   static_cast<std::size_t>(picture_.bytesPerLine())};
  render::CanvasRenderer::render(model_.makeScene(background, true), {pixels, scale},
                                 {size.width() / scale, size.height() / scale});
}

}  // namespace ui
