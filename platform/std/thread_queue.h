#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

#include "platform/serial_queue.h"

namespace platform {

/// A serial queue with a thread of its own. Must not end from within its own work.
class ThreadQueue final : public SerialQueue {
 public:
  /// The thread bears the last 15 bytes of `label`, as many as the kernel keeps: labels
  /// differ at their ends.
  explicit ThreadQueue(const std::string& label);

  void post(std::function<void()> work) override;

 private:
  void run(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any posted_;
  std::deque<std::function<void()>> waiting_;  // Guarded by mutex_.
  std::jthread thread_;                        // Last, so that it ends before what it uses.
};

}  // namespace platform
