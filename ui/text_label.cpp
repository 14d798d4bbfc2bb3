#include "ui/text_label.h"

#include <QApplication>
#include <QEvent>

namespace ui {
namespace {

// Sizes relative to body text, as on desktops where body is 13 points.
constexpr double kLargeTitleSize = 26.0 / 13.0;
constexpr double kCalloutSize = 12.0 / 13.0;
constexpr double kCaptionSize = 11.0 / 13.0;

constexpr float kSecondaryOpacity = 0.65F;

}  // namespace

QFont fontOf(TextStyle style) {
  QFont font = QApplication::font();
  switch (style) {
    case TextStyle::largeTitle:
      font.setPointSizeF(font.pointSizeF() * kLargeTitleSize);
      font.setBold(true);
      break;
    case TextStyle::body:
      break;
    case TextStyle::headline:
      font.setBold(true);
      break;
    case TextStyle::callout:
      font.setPointSizeF(font.pointSizeF() * kCalloutSize);
      break;
    case TextStyle::caption:
      font.setPointSizeF(font.pointSizeF() * kCaptionSize);
      break;
  }
  return font;
}

QColor secondaryColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Active, QPalette::WindowText);
  color.setAlphaF(kSecondaryOpacity);
  return color;
}

TextLabel::TextLabel(const QString& text, TextStyle style, TextColor color, QWidget* parent)
    : QLabel(text, parent), color_(color) {
  setFont(fontOf(style));
  setTextFormat(Qt::PlainText);
  applyColor();
}

void TextLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
    applyColor();
  }
}

void TextLabel::applyColor() {
  if (color_ == TextColor::primary) return;
  const QPalette inherited = parentWidget() ? parentWidget()->palette() : QApplication::palette();
  const QColor wanted = secondaryColor(inherited);
  QPalette own = palette();
  if (own.color(QPalette::Active, QPalette::WindowText) == wanted) return;
  own.setColor(QPalette::Active, QPalette::WindowText, wanted);
  own.setColor(QPalette::Inactive, QPalette::WindowText, wanted);
  setPalette(own);
}

}  // namespace ui
