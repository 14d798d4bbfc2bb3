#pragma once

#include <ctime>

namespace platform {

/// The day and the time of day where the person is. For names, never for measuring time.
class Calendar {
 public:
  virtual ~Calendar() = default;
  /// Main thread only.
  virtual std::tm localTime() const = 0;
};

}  // namespace platform
