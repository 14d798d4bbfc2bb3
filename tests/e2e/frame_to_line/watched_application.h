#pragma once

#include <QApplication>

#include "tests/e2e/frame_to_line/timeline.h"

namespace frame_to_line {

/// Notes how long the event loop was busy with each event, and when a window had been painted.
class WatchedApplication final : public QApplication {
 public:
  WatchedApplication(int& argc, char** argv, Timeline& timeline)
      : QApplication(argc, argv), timeline_(timeline) {}

  bool notify(QObject* receiver, QEvent* event) override;

 private:
  Timeline& timeline_;
  int depth_ = 0;  // Of events that are sent while others are handled.
};

}  // namespace frame_to_line
