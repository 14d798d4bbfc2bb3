#include "platform/ffmpeg/frame_queue.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace {

using platform::ffmpeg::FrameQueue;

FrameQueue::Frame frameOf(FrameQueue& queue, std::int64_t time) {
  return {queue.takeBuffer().value(), {time}};
}

TEST(FrameQueue, GivesFramesInTheirOrder) {
  FrameQueue queue(4, 2);
  queue.push(frameOf(queue, 1));
  queue.push(frameOf(queue, 2));

  EXPECT_EQ(queue.pop()->time.value, 1);
  EXPECT_EQ(queue.pop()->time.value, 2);
}

TEST(FrameQueue, TakesNoMoreThanItsCapacity) {
  FrameQueue queue(4, 2);
  for (std::size_t i = 0; i < FrameQueue::kCapacity; ++i) {
    EXPECT_TRUE(queue.hasRoom());
    EXPECT_TRUE(queue.push(frameOf(queue, static_cast<std::int64_t>(i))));
  }

  EXPECT_FALSE(queue.hasRoom());
  EXPECT_FALSE(queue.push(frameOf(queue, 99)));
}

TEST(FrameQueue, TakesNoMoreThanAFewTenthsOfASecondOfVideo) {
  FrameQueue queue(4, 2);
  for (const std::int64_t time : {0, 120, 239}) EXPECT_TRUE(queue.push(frameOf(queue, time)));
  EXPECT_TRUE(queue.push(frameOf(queue, 240)));

  EXPECT_FALSE(queue.hasRoom());
  EXPECT_FALSE(queue.push(frameOf(queue, 241)));
}

TEST(FrameQueue, HasRoomAgainWhenAFrameLeaves) {
  FrameQueue queue(4, 2);
  while (queue.push(frameOf(queue, 0))) {
  }

  queue.pop();

  EXPECT_TRUE(queue.hasRoom());
}

TEST(FrameQueue, UsesABufferAgainThatCameBack) {
  FrameQueue queue(4, 2);
  pixels::Surface buffer = queue.takeBuffer().value();
  const std::uint8_t* memory = buffer.row(0);

  queue.recycle(std::move(buffer));

  EXPECT_EQ(queue.takeBuffer()->row(0), memory);
}

TEST(FrameQueue, AfterItsCloseGivesWhatIsLeftAndThenNothing) {
  FrameQueue queue(4, 2);
  queue.push(frameOf(queue, 1));

  queue.close();

  EXPECT_FALSE(queue.hasRoom());
  EXPECT_FALSE(queue.push(frameOf(queue, 2)));
  EXPECT_EQ(queue.pop()->time.value, 1);
  EXPECT_FALSE(queue.pop().has_value());
}

TEST(FrameQueue, TheCloseWakesWhoWaits) {
  FrameQueue queue(4, 2);
  std::thread waiting([&] { EXPECT_FALSE(queue.pop().has_value()); });

  queue.close();

  waiting.join();
}

}  // namespace
