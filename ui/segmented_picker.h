#pragma once

#include <QButtonGroup>
#include <QStringList>
#include <QWidget>

namespace ui {

/// A row of joined buttons of which exactly one is chosen. Tab reaches the chosen one, the arrow
/// keys choose its neighbours.
class SegmentedPicker final : public QWidget {
  Q_OBJECT

 public:
  explicit SegmentedPicker(const QStringList& titles, QWidget* parent = nullptr);

  /// Shows the segment at `index` as the chosen one, and none for an index outside the row.
  void setChosen(int index);

 signals:
  /// The person chose the segment at `index`.
  void chosen(int index);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QButtonGroup group_;
};

}  // namespace ui
