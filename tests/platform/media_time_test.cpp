#include "platform/media_time.h"

#include <gtest/gtest.h>

namespace {

using platform::MediaTime;

TEST(MediaTime, TruncatesSecondsToWholeUnits) {
  EXPECT_EQ(MediaTime::fromSeconds(0).value, 0);
  EXPECT_EQ(MediaTime::fromSeconds(0.9999 / 600).value, 0);
  EXPECT_EQ(MediaTime::fromSeconds(1.0001 / 600).value, 1);
  EXPECT_EQ(MediaTime::fromSeconds(3600.5).value, 2160300);
}

TEST(MediaTime, KnowsItsSeconds) {
  EXPECT_DOUBLE_EQ(MediaTime{1500}.seconds(), 2.5);
}

}  // namespace
