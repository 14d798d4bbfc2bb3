#include "tools/replay/event_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace replay {
namespace {

using namespace std::chrono_literals;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(EventLoop, RunsWorkLaterAndInOrder) {
  EventLoop loop;
  std::vector<std::string> ran;
  const auto queue = loop.make("frames");
  loop.post([&] {
    ran.push_back("main");
    queue->post([&] { ran.push_back("later"); });
  });
  queue->post([&] { ran.push_back("queue"); });
  EXPECT_THAT(ran, IsEmpty());

  loop.runUntilIdle();

  EXPECT_THAT(ran, ElementsAre("main", "queue", "later"));
}

TEST(EventLoop, AQueueThatHasEndedDropsWhatWaits) {
  EventLoop loop;
  bool ran = false;
  auto queue = loop.make("frames");
  queue->post([&] { ran = true; });
  queue.reset();
  loop.runUntilIdle();
  EXPECT_FALSE(ran);
}

TEST(EventLoop, TimersFireAtTheirMomentsInTheOrderOfThese) {
  EventLoop loop;
  std::vector<std::string> fired;
  std::vector<double> at;
  const auto slow = loop.repeat(0.5, [&] {
    fired.push_back("slow");
    at.push_back(loop.now());
  });
  const auto fast = loop.repeat(0.2, [&] {
    fired.push_back("fast");
    at.push_back(loop.now());
  });

  loop.advanceTo(0.55);

  EXPECT_THAT(fired, ElementsAre("fast", "fast", "slow"));
  EXPECT_THAT(at, ElementsAre(DoubleEq(0.2), DoubleEq(0.4), DoubleEq(0.5)));
  EXPECT_EQ(loop.now(), 0.55);
}

TEST(EventLoop, ATimerMayEndItselfWhileItFires) {
  EventLoop loop;
  int fired = 0;
  std::unique_ptr<platform::RepeatingTimer> timer;
  timer = loop.repeat(0.1, [&] {
    ++fired;
    timer.reset();
  });
  loop.advanceTo(1);
  EXPECT_EQ(fired, 1);
}

TEST(EventLoop, TimeNeverRunsBackwards) {
  EventLoop loop;
  loop.advanceTo(2);
  loop.advanceTo(1);
  EXPECT_EQ(loop.now(), 2);
}

TEST(EventLoop, WaitsForTheWorkOfOtherThreads) {
  EventLoop loop;
  bool done = false;
  std::thread other([&] { loop.post([&] { done = true; }); });
  EXPECT_TRUE(loop.runUntil([&] { return done; }, 10s));
  other.join();
}

TEST(EventLoop, GivesUpWaitingWhenTheTimeIsUp) {
  EventLoop loop;
  EXPECT_FALSE(loop.runUntil([] { return false; }, 0s));
}

}  // namespace
}  // namespace replay
