#pragma once

#include <QWidget>
#include <cstdint>

#include "ui/text_label.h"

namespace ui {

/// Minutes and seconds, as "01:05"; the minutes grow past two digits.
QString elapsedTime(std::int64_t seconds);

/// A red dot, and how long the recording has run.
class RecordingIndicator final : public QWidget {
  Q_OBJECT

 public:
  explicit RecordingIndicator(QWidget* parent = nullptr);

  void setSeconds(std::int64_t seconds);

 private:
  TextLabel* time_;
};

}  // namespace ui
