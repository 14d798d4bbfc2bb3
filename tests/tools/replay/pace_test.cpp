#include "tools/replay/pace.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/std/uptime_clock.h"

namespace replay {
namespace {

void sleepFor(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

TEST(RealTime, WaitsForEachFrameFromTheFirstOneOn) {
  RealTime pace;
  pace.waitFor(7);
  const double began = platform::UptimeClock().now();

  pace.waitFor(7.1);
  pace.waitFor(7.2);

  EXPECT_GE(platform::UptimeClock().now() - began, 0.19);
}

TEST(RealTime, AFrameWhoseNextOneIsDueComesTooLate) {
  RealTime pace;
  EXPECT_TRUE(pace.waitFor(0));
  sleepFor(0.2);

  EXPECT_FALSE(pace.waitFor(0.1));
}

TEST(RealTime, AfterALateFrameTheNextOnesKeepTheClipsTimes) {
  RealTime pace;
  const double began = platform::UptimeClock().now();
  pace.waitFor(0);
  sleepFor(0.2);
  pace.waitFor(0.1);

  pace.waitFor(0.4);

  EXPECT_GE(platform::UptimeClock().now() - began, 0.39);
}

TEST(FullSpeed, FindsEveryFrameInTime) {
  FullSpeed pace;
  EXPECT_TRUE(pace.waitFor(0));
  sleepFor(0.05);

  EXPECT_TRUE(pace.waitFor(0.001));
}

}  // namespace
}  // namespace replay
