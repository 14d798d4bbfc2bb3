#pragma once

#include <QAbstractButton>

#include "strokes/palette.h"

namespace ui {

/// A round button that chooses one colour of the palette; the chosen one wears a ring.
class Swatch final : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr int kDiameter = 24;  ///< Of the circle, in points.
  static constexpr int kRingRoom = 3;   ///< Around the circle, for the ring and the focus.
  static constexpr double kRingWidth = 3;

  explicit Swatch(const strokes::PaletteColor& color, QWidget* parent = nullptr);

  /// Shows whether this is the colour to paint with. Pressing the swatch does not change that: the
  /// model does.
  void setChosen(bool isChosen);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void nextCheckState() override {}

 private:
  const strokes::PaletteColor& color_;
};

}  // namespace ui
