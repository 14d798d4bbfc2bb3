#include "platform/std/thread_queue.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "platform/std/thread_queue_factory.h"

namespace platform {
namespace {

/// Waits until the queue has run everything posted so far.
void settle(SerialQueue& queue) {
  std::promise<void> reached;
  queue.post([&] { reached.set_value(); });
  reached.get_future().wait();
}

std::string threadName(SerialQueue& queue) {
  std::promise<std::string> name;
  queue.post([&] {
    std::array<char, 64> text{};
    pthread_getname_np(pthread_self(), text.data(), text.size());
    name.set_value(text.data());
  });
  return name.get_future().get();
}

TEST(ThreadQueue, RunsItsWorkInTheOrderOfTheCallsOnOneOtherThread) {
  ThreadQueue queue("order");
  std::vector<int> order;
  std::vector<std::thread::id> threads;

  for (int i = 0; i < 100; ++i) {
    queue.post([&, i] {
      order.push_back(i);
      threads.push_back(std::this_thread::get_id());
    });
  }
  settle(queue);

  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(order.at(i), i);
    EXPECT_EQ(threads.at(i), threads.at(0));
  }
  EXPECT_NE(threads.at(0), std::this_thread::get_id());
}

TEST(ThreadQueue, TakesWorkFromSeveralThreadsWithoutLosingAny) {
  ThreadQueue queue("many");
  int count = 0;
  {
    std::vector<std::jthread> posters;
    for (int t = 0; t < 4; ++t) {
      posters.emplace_back([&] {
        for (int i = 0; i < 500; ++i) queue.post([&] { ++count; });
      });
    }
  }

  settle(queue);

  EXPECT_EQ(count, 2000);
}

TEST(ThreadQueue, WorkMayPostFurtherWork) {
  ThreadQueue queue("further");
  std::promise<void> done;

  queue.post([&] { queue.post([&] { done.set_value(); }); });

  done.get_future().wait();
}

TEST(ThreadQueue, ItsEndWaitsForTheRunningItemAndDropsTheWaitingOnes) {
  std::atomic<bool> ending = false;
  std::atomic<bool> finished = false;
  std::atomic<bool> droppedRan = false;
  std::promise<void> started;
  {
    ThreadQueue queue("end");
    queue.post([&] {
      started.set_value();
      ending.wait(false);
      std::this_thread::sleep_for(std::chrono::milliseconds(50));  // The end is under way by then.
      finished = true;
    });
    queue.post([&] { droppedRan = true; });
    started.get_future().wait();
    ending = true;
    ending.notify_one();
  }

  EXPECT_TRUE(finished);
  EXPECT_FALSE(droppedRan);
}

TEST(ThreadQueue, AnIdleQueueEndsAtOnce) {
  ThreadQueue queue("idle");

  settle(queue);
}

TEST(ThreadQueue, ItsThreadBearsTheLabelAsFarAsTheKernelKeepsIt) {
  ThreadQueueFactory factory;

  EXPECT_EQ(threadName(*factory.make("short")), "short");
  EXPECT_EQ(threadName(*factory.make("wavescribe.vision")), "vescribe.vision");
}

}  // namespace
}  // namespace platform
