#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace capture {

/// A function that one thread may exchange while another calls it. Unset, calling does nothing.
template <class... Args>
class Callback {
 public:
  void set(std::function<void(Args...)> function) {
    auto next = std::make_shared<const std::function<void(Args...)>>(std::move(function));
    const std::lock_guard guard(lock_);
    function_.swap(next);
  }

  /// Calls outside the lock, so the function may set another one.
  void operator()(Args... args) const {
    std::shared_ptr<const std::function<void(Args...)>> function;
    {
      const std::lock_guard guard(lock_);
      function = function_;
    }
    if (function && *function) (*function)(args...);
  }

 private:
  mutable std::mutex lock_;
  std::shared_ptr<const std::function<void(Args...)>> function_;
};

}  // namespace capture
