#include "platform/std/uptime_clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace platform {
namespace {

TEST(UptimeClock, CountsSecondsAndNeverRunsBackwards) {
  const UptimeClock clock;
  const double before = clock.now();

  std::this_thread::sleep_for(std::chrono::milliseconds(20));

  EXPECT_GE(clock.now() - before, 0.02);
  EXPECT_LT(clock.now() - before, 20);
}

}  // namespace
}  // namespace platform
