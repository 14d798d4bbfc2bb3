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

/// Fills the queue; how many frames it took.
std::size_t filled(FrameQueue& queue) {
  std::size_t count = 0;
  while (queue.push(frameOf(queue, static_cast<std::int64_t>(count)))) ++count;
  return count;
}

/// How many frames a queue takes whose encoder needed so long for each of `frames`.
std::size_t capacityAfter(int frames, double secondsTaken) {
  FrameQueue queue(4, 2);
  for (int i = 0; i < frames; ++i) queue.recycle(queue.takeBuffer().value(), secondsTaken);
  return filled(queue);
}

TEST(FrameQueue, TakesAFewFramesAtFirstAndThenNoMore) {
  FrameQueue queue(4, 2);

  EXPECT_EQ(filled(queue), FrameQueue::kFramesAtFirst);
  EXPECT_FALSE(queue.hasRoom());
}

TEST(FrameQueue, IsLongerForAFastEncoder) {
  EXPECT_EQ(capacityAfter(10, 0.01), FrameQueue::kMostFrames);
}

TEST(FrameQueue, IsShorterForASlowEncoderSoThatNothingWaitsLong) {
  EXPECT_EQ(capacityAfter(50, 0.19), 2u);
  EXPECT_EQ(capacityAfter(50, 3), 1u);
}

TEST(FrameQueue, ShrinksByOneForEveryOtherFrameAtMost) {
  FrameQueue queue(4, 2);
  for (int i = 0; i < 10; ++i) queue.recycle(queue.takeBuffer().value(), 0.01);
  for (int i = 0; i < 3; ++i) queue.recycle(queue.takeBuffer().value(), 3);

  EXPECT_EQ(filled(queue), FrameQueue::kMostFrames - 2);
}

TEST(FrameQueue, OneSlowFrameOfAFastEncoderChangesNothing) {
  FrameQueue queue(4, 2);
  for (int i = 0; i < 10; ++i) queue.recycle(queue.takeBuffer().value(), 0.01);
  queue.recycle(queue.takeBuffer().value(), 0.2);

  EXPECT_EQ(filled(queue), FrameQueue::kMostFrames);
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

  queue.recycle(std::move(buffer), 0.01);

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
