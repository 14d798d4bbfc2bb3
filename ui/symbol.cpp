#include "ui/symbol.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <cmath>
#include <memory>

namespace ui {
namespace {

QColor iconColor(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  switch (mode) {
    case QIcon::Disabled:
      return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
      return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
      return palette.color(QPalette::Active, QPalette::ButtonText);
  }
  Q_UNREACHABLE();
}

class SymbolEngine final : public QIconEngine {
 public:
  explicit SymbolEngine(QString name) : name_(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    drawSymbol(*painter, name_, rect, iconColor(mode));
  }

  /// `size`: device pixels.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new SymbolEngine(*this); }

 private:
  QString name_;
};

}  // namespace

QIcon symbolIcon(const QString& name) {
  return QIcon(new SymbolEngine(name));
}

void drawSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color) {
  QSvgRenderer drawing(QStringLiteral(":/icons/%1.svg").arg(name));
  drawing.setAspectRatioMode(Qt::KeepAspectRatio);
  // The drawings are black: their coverage becomes a mask for the colour.
  const double scale = painter.device()->devicePixelRatio();
  QImage mask((rect.size() * scale).toSize().expandedTo(QSize(1, 1)),
              QImage::Format_ARGB32_Premultiplied);
  mask.fill(Qt::transparent);
  QPainter maskPainter(&mask);
  drawing.render(&maskPainter, mask.rect());
  maskPainter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  maskPainter.fillRect(mask.rect(), color);
  maskPainter.end();
  painter.drawImage(rect, mask);
}

SymbolView::SymbolView(const QString& name, int pointSize, QPalette::ColorRole role,
                       QWidget* parent)
    : QWidget(parent), name_(name), role_(role) {
  setFixedSize(pointSize, pointSize);
}

SymbolView::SymbolView(const QString& name, int pointSize, const QColor& color, QWidget* parent)
    : QWidget(parent), name_(name), role_(QPalette::WindowText), color_(color) {
  setFixedSize(pointSize, pointSize);
}

void SymbolView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawSymbol(painter, name_, rect(), color_.isValid() ? color_ : palette().color(role_));
}

}  // namespace ui
