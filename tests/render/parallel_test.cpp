#include "render/parallel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <new>
#include <set>
#include <thread>
#include <vector>

namespace render {
namespace {

using testing::Each;

TEST(ShareOut, HandsOutEveryNumberOnce) {
  constexpr int kCount = 1000;
  std::vector<int> timesHandedOut(kCount);

  shareOut(kCount, 4, [&](const std::function<int()>& next) {
    for (int i = next(); i < kCount; i = next()) ++timesHandedOut[static_cast<std::size_t>(i)];
  });

  EXPECT_THAT(timesHandedOut, Each(1));
}

TEST(ShareOut, MoreThreadsThanNumbersAreNotStarted) {
  std::mutex mutex;
  std::set<std::thread::id> threads;

  shareOut(2, 8, [&](const std::function<int()>&) {
    const std::scoped_lock lock(mutex);
    threads.insert(std::this_thread::get_id());
  });

  EXPECT_LE(threads.size(), 2u);
}

TEST(ShareOut, WhatAHelperThrowsReachesTheCallerOnceAllHaveEnded) {
  const std::thread::id caller = std::this_thread::get_id();
  std::atomic<int> ended{0};

  const auto runOutOfMemoryBeside = [&] {
    shareOut(8, 3, [&](const std::function<int()>& next) {
      while (next() < 8) std::this_thread::yield();
      ++ended;
      if (std::this_thread::get_id() != caller) throw std::bad_alloc();
    });
  };

  EXPECT_THROW(runOutOfMemoryBeside(), std::bad_alloc);
  EXPECT_EQ(ended, 3);
}

}  // namespace
}  // namespace render
