#pragma once

namespace platform {

/// The one clock of the program. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Seconds of uptime: monotonic, never the time of day.
  virtual double now() const = 0;
};

}  // namespace platform
