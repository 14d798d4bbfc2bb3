#include "tests/platform/gstreamer/gst_capture_service_fixture.h"

namespace platform::gstreamer {
namespace {

using testing::ElementsAre;
using testing::Pair;

TEST_F(GstCaptureServiceTest, NamesTheCameraAsTheDesktopDoes) {
  plugIn();

  const auto device = service.defaultVideoDevice();

  ASSERT_TRUE(device);
  EXPECT_EQ(device->displayName(), "Virtual Camera");
}

TEST_F(GstCaptureServiceTest, DeliversThePictureUprightAndNotMirrored) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(3));

  const auto frame = listener.frame();

  EXPECT_EQ(frame.width(), 1280);
  EXPECT_EQ(frame.height(), 720);
  support::expectColourBars(*frame.image);
}

TEST_F(GstCaptureServiceTest, DeliversEveryFrameWithItsCaptureTimeOnTheMonotonicClock) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(60));
  const double now = UptimeClock().now();

  const auto times = listener.times();

  EXPECT_LT(now - times.back(), 0.5);
  EXPECT_GE(now, times.back());
  EXPECT_NEAR((times.back() - times.front()) / static_cast<double>(times.size() - 1), 1.0 / 30,
              0.01);
  for (std::size_t i = 1; i < times.size(); ++i) EXPECT_GT(times[i], times[i - 1]);
  EXPECT_TRUE(listener.errors().empty());
}

TEST_F(GstCaptureServiceTest, ACameraWithoutHighDefinitionKeepsItsOwnSize) {
  plugIn("video/x-raw,format=YUY2,width=640,height=480,framerate=30/1");
  start();
  ASSERT_TRUE(framesReach(3));

  EXPECT_EQ(listener.frame().width(), 640);
  EXPECT_EQ(listener.frame().height(), 480);
}

TEST_F(GstCaptureServiceTest, ReadsPlanarPictures) {
  plugIn("video/x-raw,format=NV12,width=1280,height=720,framerate=30/1");
  start();
  ASSERT_TRUE(framesReach(3));

  support::expectColourBars(*listener.frame().image);
}

TEST_F(GstCaptureServiceTest, PicturesThatNeedNoConversionAreCopiedOutOfTheCamerasMemory) {
  plugIn("video/x-raw,format=BGRA,width=640,height=480,framerate=30/1");
  start();
  ASSERT_TRUE(framesReach(3));
  const auto kept = listener.frame();

  source.reset();
  camera.reset();

  support::expectColourBars(*kept.image);
}

TEST_F(GstCaptureServiceTest, WithoutACameraSaysSoOnce) {
  start();

  ASSERT_TRUE(secondsUntil([&] { return !listener.errors().empty(); }, 20));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));

  EXPECT_THAT(listener.errors(),
              ElementsAre(Pair("No camera was found.",
                               "AVCaptureDevice.default(for: .video) returned nil.")));
}

TEST_F(GstCaptureServiceTest, WithoutPipeWireThereIsNoCameraHere) {
  desktop->killPipeWire();
  start();

  ASSERT_TRUE(secondsUntil([&] { return !listener.errors().empty(); }, 20));

  EXPECT_EQ(listener.errors().front().first, "No camera was found.");
}

TEST_F(GstCaptureServiceTest, ASecondStartLeavesTheFramesFlowing) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(3));

  source->start();

  EXPECT_TRUE(moreFrames());
  EXPECT_TRUE(listener.errors().empty());
}

TEST_F(GstCaptureServiceTest, AVanishedCameraIsNoticedWithinTwoSecondsAndComesBack) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(3));

  camera->kill();
  const auto noticed = secondsUntil([&] { return !listener.errors().empty(); }, 20);
  ASSERT_TRUE(noticed);
  EXPECT_LT(*noticed, 2);
  EXPECT_EQ(listener.errors().front().first, "The camera stopped.");
  EXPECT_FALSE(listener.errors().front().second.empty());

  camera.emplace(kHighDefinition);
  ASSERT_TRUE(secondsUntil([&] { return listener.returns() == 1; }, 20));
  source->start();
  EXPECT_TRUE(moreFrames());
  EXPECT_EQ(listener.errors().size(), 1u);
}

TEST_F(GstCaptureServiceTest, ACameraThatFallsSilentIsNoticedWithinTwoSeconds) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(3));

  camera->freeze();
  const auto noticed = secondsUntil([&] { return !listener.errors().empty(); }, 20);

  ASSERT_TRUE(noticed);
  EXPECT_LT(*noticed, 2);
  EXPECT_EQ(listener.errors().front().first, "The camera stopped.");
}

TEST_F(GstCaptureServiceTest, ACameraThatDeliversNothingIsToldAndTheNextOneIsUsed) {
  plugIn(kHighDefinition, Pictures::none);
  start();
  startOnReturn();

  ASSERT_TRUE(secondsUntilAnError());
  EXPECT_EQ(listener.errors().front(),
            std::pair(std::string("The camera stopped."),
                      std::string("Virtual Camera delivers no picture.")));

  camera.emplace(kHighDefinition);
  EXPECT_TRUE(framesReach(5));
}

TEST_F(GstCaptureServiceTest, SurvivesTheEndOfPipeWire) {
  plugIn();
  start();
  ASSERT_TRUE(framesReach(3));

  desktop->killPipeWire();
  const auto noticed = secondsUntil([&] { return !listener.errors().empty(); }, 20);
  ASSERT_TRUE(noticed);
  EXPECT_LT(*noticed, 2);
  EXPECT_EQ(listener.returns(), 0);

  desktop->startPipeWire();
  camera.emplace(kHighDefinition);
  ASSERT_TRUE(secondsUntil([&] { return listener.returns() == 1; }, 20));
  source->start();
  EXPECT_TRUE(moreFrames());
}

TEST_F(GstCaptureServiceTest, ASlowReaderGetsTheNewestFrame) {
  plugIn();
  source.emplace(service, queues);
  std::atomic<int> frames = 0;
  std::atomic<double> oldest = 0;
  source->setOnFrame([&](const pixels::PixelBuffer&, double time) {
    // The first frames may have waited for the pipeline to be ready.
    if (++frames > 3) oldest = std::max<double>(oldest, UptimeClock().now() - time);
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
  });
  source->start();

  ASSERT_TRUE(secondsUntil([&] { return frames >= 8; }, 30));

  // Were frames to queue up, the fifth would be more than a second old.
  EXPECT_LT(oldest, 0.4);
}

TEST_F(GstCaptureServiceTest, NoFrameComesAfterItsEnd) {
  for (int i = 0; i < 5; ++i) {
    plugIn();
    start();
    ASSERT_TRUE(moreFrames());
    source.reset();
    const auto frames = listener.frames();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(listener.frames(), frames);
    unplug();
  }
}

TEST_F(GstCaptureServiceTest, CanEndBeforeItsFirstFrame) {
  plugIn();
  for (int i = 0; i < 10; ++i) {
    start();
    std::this_thread::sleep_for(std::chrono::milliseconds(3 * i));
    source.reset();
  }

  EXPECT_TRUE(listener.errors().empty());
}

// WAVESCRIBE_CAMERA_CYCLES sets the number.
TEST_F(GstCaptureServiceTest, SurvivesManyCyclesOfStartStopVanishAndReturn) {
  const char* wanted = std::getenv("WAVESCRIBE_CAMERA_CYCLES");
  const int cycles = wanted ? std::atoi(wanted) : 5;
  for (int i = 0; i < cycles; ++i) {
    plugIn();
    start();
    startOnReturn();  // On a busy machine a virtual camera may bring nothing at first.
    ASSERT_TRUE(moreFrames()) << "cycle " << i;
    const auto errors = listener.errors().size();
    const int returns = listener.returns();

    camera->kill();
    ASSERT_TRUE(secondsUntil([&] { return listener.errors().size() > errors; }, 20)) << i;
    camera.emplace(kHighDefinition);
    ASSERT_TRUE(secondsUntil([&] { return listener.returns() > returns; }, 20)) << i;
    ASSERT_TRUE(moreFrames()) << "cycle " << i;
    source.reset();
    unplug();
  }
}

}  // namespace
}  // namespace platform::gstreamer
