#include "platform/std/system_calendar.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace platform {
namespace {

TEST(SystemCalendar, TellsTheTimeOfTheSessionsTimeZone) {
  setenv("TZ", "TST-05:30", 1);  // Five and a half hours ahead.
  tzset();
  const std::time_t before = std::time(nullptr);

  std::tm local = SystemCalendar().localTime();

  const std::time_t after = std::time(nullptr);
  unsetenv("TZ");
  tzset();
  const std::time_t seen = timegm(&local) - (5 * 60 + 30) * 60;
  EXPECT_GE(seen, before);
  EXPECT_LE(seen, after);
}

}  // namespace
}  // namespace platform
