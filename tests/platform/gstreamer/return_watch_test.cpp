#include "platform/gstreamer/return_watch.h"

#include <gtest/gtest.h>

namespace platform::gstreamer {
namespace {

int looksUntilTry(ReturnWatch& watch, bool connected) {
  int looks = 1;
  while (!watch.look(connected) && looks < 10'000) ++looks;
  return looks;
}

TEST(ReturnWatch, WaitsForNothingBeforeALoss) {
  ReturnWatch watch;

  EXPECT_FALSE(watch.isWaiting());
  EXPECT_FALSE(watch.look(true));
}

TEST(ReturnWatch, ACameraThatComesBackIsTriedAtOnce) {
  ReturnWatch watch;
  watch.lose(false);
  EXPECT_FALSE(watch.look(false));
  EXPECT_FALSE(watch.look(false));

  EXPECT_TRUE(watch.look(true));
}

TEST(ReturnWatch, ACameraThatComesBackIsAnnouncedOnce) {
  ReturnWatch watch;
  watch.lose(false);
  watch.look(true);

  EXPECT_FALSE(watch.look(true));
  EXPECT_FALSE(watch.isWaiting());
}

TEST(ReturnWatch, ACameraThatStaysConnectedIsTriedLessAndLessOften) {
  ReturnWatch watch;
  watch.lose(true);
  const int first = looksUntilTry(watch, true);
  watch.lose(true);
  const int second = looksUntilTry(watch, true);
  for (int i = 0; i < 20; ++i) {
    watch.lose(true);
    looksUntilTry(watch, true);
  }
  watch.lose(true);
  const int last = looksUntilTry(watch, true);

  EXPECT_EQ(first, ReturnWatch::kFirstWait + 1);
  EXPECT_EQ(second, 2 * ReturnWatch::kFirstWait + 1);
  EXPECT_EQ(last, ReturnWatch::kLongestWait + 1);
}

TEST(ReturnWatch, GoodWorkEndsTheLongWaits) {
  ReturnWatch watch;
  for (int i = 0; i < 3; ++i) watch.lose(true);

  watch.forgive();
  watch.lose(true);

  EXPECT_EQ(looksUntilTry(watch, true), ReturnWatch::kFirstWait + 1);
}

TEST(ReturnWatch, UnpluggingDuringAWaitEndsIt) {
  ReturnWatch watch;
  for (int i = 0; i < 5; ++i) watch.lose(true);
  watch.look(false);

  EXPECT_TRUE(watch.look(true));
}

TEST(ReturnWatch, AStartByTheOwnerEndsTheWait) {
  ReturnWatch watch;
  watch.lose(false);

  watch.settle();

  EXPECT_FALSE(watch.look(true));
}

}  // namespace
}  // namespace platform::gstreamer
