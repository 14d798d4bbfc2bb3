#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <system_error>
#include <thread>
#include <vector>

namespace render {

/// Calls work(next) once on each of `threads` threads, this one among them, and returns when all
/// have. next() hands out 0, 1, ... count - 1, each once, then count or more. Fewer threads do it
/// where the system gives no more. What one of them throws is thrown here, once all have ended;
/// then some numbers may never have been handed out.
inline void shareOut(int count, unsigned threads,
                     const std::function<void(const std::function<int()>&)>& work) {
  std::atomic<int> handedOut{0};
  const std::function<int()> next = [&handedOut] { return handedOut++; };
  std::atomic_flag hasFailed;
  std::exception_ptr failure;
  const auto takePart = [&] {
    try {
      work(next);
    } catch (...) {
      if (!hasFailed.test_and_set()) failure = std::current_exception();
      handedOut = count;
    }
  };
  {
    std::vector<std::jthread> helpers;
    helpers.reserve(threads);
    try {
      for (unsigned i = 1; i < threads && static_cast<int>(i) < count; ++i)
        helpers.emplace_back(takePart);
    } catch (const std::system_error&) {
      // Those that there are do it all.
    }
    takePart();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace render
