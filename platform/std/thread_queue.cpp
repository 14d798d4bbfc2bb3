#include "platform/std/thread_queue.h"

#include <pthread.h>

#include <cstddef>
#include <utility>

namespace platform {

namespace {
constexpr std::size_t kLongestThreadName = 15;

std::string threadName(const std::string& label) {
  return label.size() > kLongestThreadName ? label.substr(label.size() - kLongestThreadName)
                                           : label;
}
}  // namespace

ThreadQueue::ThreadQueue(const std::string& label)
    : thread_([this, name = threadName(label)](const std::stop_token& stop) {
        pthread_setname_np(pthread_self(), name.c_str());
        run(stop);
      }) {}

void ThreadQueue::post(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
  }
  posted_.notify_one();
}

void ThreadQueue::run(const std::stop_token& stop) {
  while (true) {
    std::function<void()> work;
    {
      std::unique_lock lock(mutex_);
      posted_.wait(lock, stop, [this] { return !waiting_.empty(); });
      if (stop.stop_requested()) return;
      work = std::move(waiting_.front());
      waiting_.pop_front();
    }
    work();
  }
}

}  // namespace platform
