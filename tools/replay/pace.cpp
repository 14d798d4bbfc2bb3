#include "tools/replay/pace.h"

#include <chrono>
#include <thread>

#include "platform/std/uptime_clock.h"

namespace replay {
namespace {

/// A camera's frames follow each other about this fast.
constexpr double kFrameSeconds = 1.0 / 30;

}  // namespace

bool RealTime::waitFor(double time) {
  const double now = platform::UptimeClock().now();
  if (!started_) {
    start_ = now - time;
    started_ = true;
  }
  const double early = start_ + time - now;
  if (early > 0) std::this_thread::sleep_for(std::chrono::duration<double>(early));
  return early > -kFrameSeconds;
}

}  // namespace replay
