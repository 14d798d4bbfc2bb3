#pragma once

#include <functional>
#include <memory>

namespace platform {

/// A timer that fires until it is destroyed.
class RepeatingTimer {
 public:
  virtual ~RepeatingTimer() = default;
};

/// Makes timers of the main thread. Main thread only.
class TimerFactory {
 public:
  virtual ~TimerFactory() = default;
  /// Calls `fire` on the main thread every `intervalSeconds`, as precisely as the machine allows,
  /// also while menus are open or the window is resized. Destroying the timer, also from within
  /// `fire`, stops it at once.
  virtual std::unique_ptr<RepeatingTimer> repeat(double intervalSeconds,
                                                 std::function<void()> fire) = 0;
};

}  // namespace platform
