#pragma once

#include <QIcon>
#include <QWidget>

namespace ui {

/// An icon of the window by the name of its drawing, such as "trash": drawn afresh in the text
/// colour of the palette for every size and screen.
QIcon symbolIcon(const QString& name);

/// Draws a symbol, as large as fits, in the middle of `rect`.
void drawSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color);

/// A symbol that stands by itself. Decoration only: screen readers pass over it.
class SymbolView final : public QWidget {
 public:
  /// `pointSize`: width and height. Colour: a role of the palette, or one of the symbol's own.
  SymbolView(const QString& name, int pointSize, QPalette::ColorRole role,
             QWidget* parent = nullptr);
  SymbolView(const QString& name, int pointSize, const QColor& color, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const QString name_;
  const QPalette::ColorRole role_;
  const QColor color_;  // Invalid: the palette's.
};

}  // namespace ui
