#include "platform/std/system_calendar.h"

namespace platform {

std::tm SystemCalendar::localTime() const {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

}  // namespace platform
