#include "platform/qt/main_queue.h"

#include <gmock/gmock.h>

#include <QThread>
#include <optional>
#include <thread>
#include <vector>

#include "tests/support/widgets.h"

namespace platform::qt {
namespace {

using support::settle;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(MainQueue, WorkRunsLaterInTheOrderOfTheCalls) {
  MainQueue queue;
  std::vector<int> done;

  queue.post([&] { done.push_back(1); });
  queue.post([&] { done.push_back(2); });
  EXPECT_THAT(done, IsEmpty());
  settle();

  EXPECT_THAT(done, ElementsAre(1, 2));
}

TEST(MainQueue, WorkOfAnotherThreadRunsOnTheMainThread) {
  MainQueue queue;
  QThread* ranOn = nullptr;

  std::thread([&] { queue.post([&] { ranOn = QThread::currentThread(); }); }).join();
  settle();

  EXPECT_EQ(ranOn, QThread::currentThread());
}

TEST(MainQueue, WorkStillWaitingAtTheEndIsDropped) {
  std::optional<MainQueue> queue(std::in_place);
  bool ran = false;
  queue->post([&] { ran = true; });

  queue.reset();
  settle();

  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace platform::qt
