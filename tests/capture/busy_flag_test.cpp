#include "capture/busy_flag.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace capture {
namespace {

TEST(BusyFlag, IsFreeAtFirst) {
  BusyFlag flag;

  EXPECT_TRUE(flag.tryClaim());
}

TEST(BusyFlag, ASecondClaimFailsAndChangesNothing) {
  BusyFlag flag;
  flag.tryClaim();

  EXPECT_FALSE(flag.tryClaim());
  EXPECT_FALSE(flag.tryClaim());
}

TEST(BusyFlag, CanBeClaimedAgainOnceReleased) {
  BusyFlag flag;
  flag.tryClaim();

  flag.release();

  EXPECT_TRUE(flag.tryClaim());
}

TEST(BusyFlag, ReleasingAFreeFlagLeavesItFree) {
  BusyFlag flag;

  flag.release();

  EXPECT_TRUE(flag.tryClaim());
}

TEST(BusyFlag, OfManyThreadsOnlyOneClaims) {
  BusyFlag flag;
  std::atomic<int> claims = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {
      threads.emplace_back([&] { claims += flag.tryClaim() ? 1 : 0; });
    }
  }

  EXPECT_EQ(claims, 1);
}

}  // namespace
}  // namespace capture
