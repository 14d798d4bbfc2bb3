#include "platform/std/uptime_clock.h"

#include <chrono>

namespace platform {

double UptimeClock::now() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace platform
