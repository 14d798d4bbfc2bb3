#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/serial_queue.h"

namespace support {

/// Makes serial queues whose work waits until a test drains it, by the queue's label; the test's
/// own thread runs it. A queue that has ended leaves nothing to drain. One thread only.
class FakeSerialQueueFactory final : public platform::SerialQueueFactory {
 public:
  std::unique_ptr<platform::SerialQueue> make(const std::string& label) override {
    auto work = std::make_shared<Work>();
    waiting_[label] = work;
    return std::make_unique<Queue>(std::move(work));
  }

  /// True while a queue of this label lives.
  bool exists(const std::string& label) const { return workOf(label) != nullptr; }

  std::size_t waiting(const std::string& label) const {
    const auto work = workOf(label);
    return work ? work->size() : 0;
  }

  /// Runs everything that waits in the queue, and what that posts to it in turn.
  void drain(const std::string& label) {
    while (const auto work = workOf(label)) {
      if (work->empty()) return;
      const auto item = std::move(work->front());
      work->pop_front();
      item();
    }
  }

 private:
  using Work = std::deque<std::function<void()>>;

  class Queue final : public platform::SerialQueue {
   public:
    explicit Queue(std::shared_ptr<Work> work) : work_(std::move(work)) {}
    void post(std::function<void()> work) override { work_->push_back(std::move(work)); }

   private:
    const std::shared_ptr<Work> work_;
  };

  std::shared_ptr<Work> workOf(const std::string& label) const {
    const auto found = waiting_.find(label);
    return found == waiting_.end() ? nullptr : found->second.lock();
  }

  std::map<std::string, std::weak_ptr<Work>> waiting_;
};

}  // namespace support
