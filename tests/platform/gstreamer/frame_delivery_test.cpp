#include "platform/gstreamer/frame_delivery.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/std/thread_queue_factory.h"
#include "tests/support/pictures.h"

namespace platform::gstreamer {
namespace {

using support::greyFrame;

class FrameDeliveryTest : public testing::Test {
 protected:
  ThreadQueueFactory queues;
  std::unique_ptr<SerialQueue> queue = queues.make("frames");
};

TEST_F(FrameDeliveryTest, ReturnsOnceTheHandlerHasSeenTheFrame) {
  std::atomic<int> width = 0;
  const auto delivery =
      std::make_shared<FrameDelivery>(*queue, [&](const auto& sample) { width = sample->width(); });

  EXPECT_TRUE(delivery->deliver(greyFrame(4, 3)));

  EXPECT_EQ(width, 4);
}

TEST_F(FrameDeliveryTest, DeliversNothingOnceClosed) {
  std::atomic<int> frames = 0;
  const auto delivery = std::make_shared<FrameDelivery>(*queue, [&](const auto&) { ++frames; });

  delivery->close();

  EXPECT_FALSE(delivery->deliver(greyFrame(4, 3)));
  EXPECT_EQ(frames, 0);
}

TEST_F(FrameDeliveryTest, ClosingFreesTheThreadWhoseFrameStillWaitsInTheQueue) {
  std::atomic<bool> blocked = true;
  std::atomic<int> frames = 0;
  queue->post([&] {
    while (blocked) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  });
  const auto delivery = std::make_shared<FrameDelivery>(*queue, [&](const auto&) { ++frames; });
  std::jthread camera([&] { delivery->deliver(greyFrame(4, 3)); });

  delivery->close();
  camera.join();
  blocked = false;
  queue.reset();

  EXPECT_EQ(frames, 0);
}

TEST_F(FrameDeliveryTest, ClosingWaitsForAHandlerThatRuns) {
  std::atomic<bool> entered = false;
  std::atomic<bool> left = false;
  const auto delivery = std::make_shared<FrameDelivery>(*queue, [&](const auto&) {
    entered = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    left = true;
  });
  const std::jthread camera([&] { delivery->deliver(greyFrame(4, 3)); });
  while (!entered) std::this_thread::yield();

  delivery->close();

  EXPECT_TRUE(left);
}

}  // namespace
}  // namespace platform::gstreamer
