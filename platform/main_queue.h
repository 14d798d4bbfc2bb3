#pragma once

#include <functional>

namespace platform {

/// Brings work to the main thread.
class MainQueue {
 public:
  virtual ~MainQueue() = default;
  /// Runs `work` later on the main thread, in the order of the calls; never within this call.
  /// Any thread. Work still waiting when the program ends is dropped.
  virtual void post(std::function<void()> work) = 0;
};

}  // namespace platform
