#include "ui/canvas_geometry.h"

#include <algorithm>

namespace ui {

QRectF canvasRect(QSizeF viewSize, double aspect) {
  const double w = viewSize.width();
  const double h = viewSize.height();
  if (!(aspect > 0 && w > 0 && h > 0)) return {0, 0, w, h};
  const bool isViewWider = h < w / aspect;
  const double width = isViewWider ? aspect * h : w;
  const double height = isViewWider ? h : w / aspect;
  return {(w - width) * 0.5, (h - height) * 0.5, width, height};
}

QPointF normalized(QPointF position, const QRectF& canvas) {
  if (!(canvas.width() > 0 && canvas.height() > 0)) return {0, 0};
  const double x = (position.x() - canvas.x()) / canvas.width();
  const double y = (position.y() - canvas.y()) / canvas.height();
  return {std::clamp(x, 0.0, 1.0), std::clamp(y, 0.0, 1.0)};
}

QRect devicePixels(const QRectF& canvas, double deviceScale) {
  const QPoint topLeft = (canvas.topLeft() * deviceScale).toPoint();
  const QPoint pastBottomRight = (canvas.bottomRight() * deviceScale).toPoint();
  return {topLeft, QSize(pastBottomRight.x() - topLeft.x(), pastBottomRight.y() - topLeft.y())};
}

}  // namespace ui
