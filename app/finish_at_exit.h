#pragma once

#include <functional>

namespace app {

/// Finishes what must be finished when the process ends by exit() while the event loop runs, as it
/// does when the display's connection breaks: main() then never comes to its end. One at a time,
/// on the main thread.
class FinishAtExit {
 public:
  /// `finish` is called by exit(), unless this has ended before.
  explicit FinishAtExit(std::function<void()> finish);
  ~FinishAtExit();
  FinishAtExit(const FinishAtExit&) = delete;
  FinishAtExit& operator=(const FinishAtExit&) = delete;
};

}  // namespace app
