#pragma once

#include <chrono>
#include <future>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace platform::gstreamer {

/// How long a camera may take to open, to start or to end. Most take less than a second.
constexpr std::chrono::seconds kPatience(5);

/// Begins `work` on a thread of its own, because it waits for something that may hang for ever.
/// Work that hangs is left behind, at the end of the process too; nobody waits for its result,
/// which is destroyed where it comes about. `work` owns all that it touches.
template <class Work>
std::future<std::invoke_result_t<Work&>> begin(Work work) {
  std::packaged_task<std::invoke_result_t<Work&>()> task(std::move(work));
  auto result = task.get_future();
  std::thread(std::move(task)).detach();
  return result;
}

/// The result of such work; none when it takes longer than `patience`.
template <class Work>
std::optional<std::invoke_result_t<Work&>> within(std::chrono::seconds patience, Work work) {
  auto result = begin(std::move(work));
  if (result.wait_for(patience) != std::future_status::ready) return std::nullopt;
  return result.get();
}

}  // namespace platform::gstreamer
