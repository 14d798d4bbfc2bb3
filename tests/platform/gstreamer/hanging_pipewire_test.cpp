#include "tests/platform/gstreamer/gst_capture_service_fixture.h"

namespace platform::gstreamer {
namespace {

class HangingPipeWireTest : public GstCaptureServiceTest {
 protected:
  /// A camera runs, as for its owner, until PipeWire hangs and that is noticed.
  void runUntilPipeWireHangs() {
    plugIn();
    start();
    startOnReturn();
    ASSERT_TRUE(framesReach(3));
    desktop->freezePipeWire();
    ASSERT_TRUE(secondsUntilAnError());
  }
};

TEST_F(HangingPipeWireTest, ACameraThatHangsAtTheStartIsToldAndTheNextOneIsUsed) {
  plugIn();
  camera->freeze();
  start();
  startOnReturn();

  ASSERT_TRUE(secondsUntilAnError());
  EXPECT_EQ(listener.errors().front().first, "The camera stopped.");

  camera.emplace(kHighDefinition);
  EXPECT_TRUE(framesReach(5));
}

TEST_F(HangingPipeWireTest, AHangingPipeWireHasNoCameraUntilItAnswers) {
  camera.emplace(kHighDefinition);
  std::this_thread::sleep_for(std::chrono::seconds(1));
  desktop->freezePipeWire();
  start();

  ASSERT_TRUE(secondsUntilAnError());
  EXPECT_EQ(listener.errors().front().first, "No camera was found.");

  desktop->thawPipeWire();
  ASSERT_TRUE(secondsUntil([&] { return service.defaultVideoDevice() != nullptr; }, 20));
  source->start();
  EXPECT_TRUE(framesReach(5));
}

TEST_F(HangingPipeWireTest, GoesOnAfterPipeWireHung) {
  ASSERT_NO_FATAL_FAILURE(runUntilPipeWireHangs());
  EXPECT_EQ(listener.errors().front().first, "The camera stopped.");
  std::this_thread::sleep_for(std::chrono::seconds(3));
  desktop->thawPipeWire();
  camera.emplace(kHighDefinition);  // PipeWire never brings the old one's frames again.

  EXPECT_TRUE(moreFrames());
}

TEST_F(HangingPipeWireTest, GoesOnWithTheNextPipeWireAfterOneThatHung) {
  ASSERT_NO_FATAL_FAILURE(runUntilPipeWireHangs());
  ASSERT_TRUE(secondsUntilAnError());  // A start that hangs.

  desktop->killPipeWire();
  desktop->startPipeWire();
  camera.emplace(kHighDefinition);

  EXPECT_TRUE(moreFrames());
}

TEST_F(HangingPipeWireTest, CanEndWhilePipeWireHangs) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(3));
  desktop->freezePipeWire();

  const auto seconds = secondsToEnd();

  EXPECT_LT(seconds, 10);
}

TEST_F(HangingPipeWireTest, CanEndWhileItWaitsForAHangingPipeWire) {
  plugIn();
  desktop->freezePipeWire();
  start();
  std::this_thread::sleep_for(std::chrono::milliseconds(200));

  const auto seconds = secondsToEnd();

  EXPECT_LT(seconds, 10);
}

}  // namespace
}  // namespace platform::gstreamer
