#pragma once

#include <QPointF>
#include <QRectF>

namespace ui {

/// The largest rectangle of `aspect` (width / height) in the middle of a view of `viewSize`; the
/// whole view when the aspect or a side is not positive.
QRectF canvasRect(QSizeF viewSize, double aspect);

/// A position in the view as a position on the canvas: 0 to 1 from the left and from the top, those
/// outside pinned to the nearest edge. (0, 0) when the canvas has no area.
QPointF normalized(QPointF position, const QRectF& canvas);

/// `canvas` moved to the nearest whole device pixels, in device pixels.
QRect devicePixels(const QRectF& canvas, double deviceScale);

}  // namespace ui
