#include "tests/e2e/frame_to_line/watched_application.h"

#include <time.h>

#include <QEvent>

#include "platform/std/uptime_clock.h"

namespace frame_to_line {
namespace {

double cpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

const char* nameOf(QEvent::Type type) {
  switch (type) {
    case QEvent::UpdateRequest:
      return "painting";
    case QEvent::Timer:
      return "timers";
    case QEvent::MetaCall:
      return "results";
    default:
      return "anything else";
  }
}

}  // namespace

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
  const QEvent::Type type = event->type();
  const bool isOutermost = depth_++ == 0;
  const double began = platform::UptimeClock().now();
  const double cpuBegan = cpuSeconds();
  const bool result = QApplication::notify(receiver, event);
  --depth_;
  if (isOutermost) {
    const double now = platform::UptimeClock().now();
    timeline_.mainThreadBusy(nameOf(type), now - began, cpuSeconds() - cpuBegan);
    if (type == QEvent::UpdateRequest) timeline_.pictureShown(now);
  }
  return result;
}

}  // namespace frame_to_line
