#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace render {

/// Calls work(next) once on each of `threads` threads, this one among them, and returns when all
/// have. next() hands out 0, 1, ... count - 1, each once, then count or more.
inline void shareOut(int count, unsigned threads,
                     const std::function<void(const std::function<int()>&)>& work) {
  std::atomic<int> handedOut{0};
  const std::function<int()> next = [&handedOut] { return handedOut++; };
  std::vector<std::jthread> helpers;
  for (unsigned i = 1; i < threads && static_cast<int>(i) < count; ++i)
    helpers.emplace_back([&] { work(next); });
  work(next);
}

}  // namespace render
