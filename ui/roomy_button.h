#pragma once

#include <QPushButton>

namespace ui {

/// A push button with some air around its text. Tab reaches it; a click leaves the keyboard focus
/// where it is, so that the space bar does not repeat the last tool.
class RoomyButton final : public QPushButton {
 public:
  explicit RoomyButton(const QString& text, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  /// Without the air, for narrow windows.
  QSize minimumSizeHint() const override { return QPushButton::sizeHint(); }
};

}  // namespace ui
