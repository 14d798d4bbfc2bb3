#pragma once

#include <QLabel>

namespace ui {

/// The text styles of the window, all derived from the desktop's own font.
enum class TextStyle { largeTitle, body, headline, callout, caption };

enum class TextColor { primary, secondary };

QFont fontOf(TextStyle style);

/// The colour of less important text over `palette`'s window colour.
QColor secondaryColor(const QPalette& palette);

/// A text in one of the window's styles that keeps up with light and dark palettes.
class TextLabel : public QLabel {
 public:
  TextLabel(const QString& text, TextStyle style, TextColor color = TextColor::primary,
            QWidget* parent = nullptr);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void applyColor();

  const TextColor color_;
};

}  // namespace ui
