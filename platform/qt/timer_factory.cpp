#include "platform/qt/timer_factory.h"

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::qt {
namespace {

/// Qt counts an interval in whole milliseconds, which 1/30 second is not. Each firing is therefore
/// set for its own place on the ideal time line; places that were missed are skipped, not made up.
class SteadyTimer final : public RepeatingTimer {
 public:
  SteadyTimer(double intervalSeconds, std::function<void()> fire)
      : intervalMs_(intervalSeconds * 1000),
        fire_(std::make_shared<const std::function<void()>>(std::move(fire))) {
    timer_->setTimerType(Qt::PreciseTimer);
    timer_->setSingleShot(true);
    QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), [this] { onTimeout(); });
    elapsed_.start();
    armNext();
  }

 private:
  /// The timer may be destroyed by the call that it makes.
  struct StopAndDeleteLater {
    void operator()(QTimer* timer) const {
      timer->stop();
      timer->disconnect();
      timer->deleteLater();
    }
  };

  void onTimeout() {
    armNext();
    const auto fire = fire_;
    (*fire)();  // Last: nothing of this object may be left.
  }

  void armNext() {
    const double nowMs = static_cast<double>(elapsed_.nsecsElapsed()) / 1e6;
    // Half an interval early is still this place's firing, not the one before.
    place_ = std::max(place_ + 1, std::floor(nowMs / intervalMs_ + 0.5));
    timer_->start(static_cast<int>(std::max(0.0, std::round(place_ * intervalMs_ - nowMs))));
  }

  const double intervalMs_;
  const std::shared_ptr<const std::function<void()>> fire_;
  const std::unique_ptr<QTimer, StopAndDeleteLater> timer_{new QTimer};
  QElapsedTimer elapsed_;
  double place_ = 0;  // On the ideal time line, in intervals since the start.
};

}  // namespace

std::unique_ptr<RepeatingTimer> TimerFactory::repeat(double intervalSeconds,
                                                     std::function<void()> fire) {
  return std::make_unique<SteadyTimer>(intervalSeconds, std::move(fire));
}

}  // namespace platform::qt
