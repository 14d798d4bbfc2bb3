#pragma once

#include "platform/timer_factory.h"

namespace platform::qt {

/// Timers of Qt's event loop. They also fire while a menu, a dialog or a resize has its own loop.
class TimerFactory final : public platform::TimerFactory {
 public:
  std::unique_ptr<RepeatingTimer> repeat(double intervalSeconds,
                                         std::function<void()> fire) override;
};

}  // namespace platform::qt
