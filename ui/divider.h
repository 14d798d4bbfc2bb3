#pragma once

#include <QWidget>

namespace ui {

/// A hairline between two groups of things.
class Divider final : public QWidget {
 public:
  /// `direction`: of the line.
  explicit Divider(Qt::Orientation direction, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace ui
