#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// Runs work one item after the other, in the order of the calls, away from the main thread.
/// Its end waits for the item that is running and drops those still waiting.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  /// Any thread.
  virtual void post(std::function<void()> work) = 0;
};

/// Makes serial queues.
class SerialQueueFactory {
 public:
  virtual ~SerialQueueFactory() = default;
  /// `label`: the name under which a debugger shows the queue's thread.
  virtual std::unique_ptr<SerialQueue> make(const std::string& label) = 0;
};

}  // namespace platform
