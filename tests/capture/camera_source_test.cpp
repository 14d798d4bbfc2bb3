#include "capture/camera_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "capture/busy_flag.h"
#include "capture/frame_hub.h"
#include "tests/support/fake_capture.h"
#include "tests/support/fake_serial_queue.h"
#include "tests/support/pictures.h"

namespace capture {
namespace {

using support::greyFrame;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* kSession = "wavescribe.camera.session";
constexpr const char* kFrames = "wavescribe.camera.frames";

class CameraSourceTest : public testing::Test {
 protected:
  CameraSourceTest() {
    source.setOnFrame([this](const pixels::PixelBuffer& frame, double time) {
      frames.emplace_back(frame.width(), time);
    });
    source.setOnError([this](const std::string& message, const std::string& details) {
      errors.emplace_back(message, details);
    });
    source.setOnReturn([this] { ++returns; });
  }

  void start() {
    source.start();
    queues.drain(kSession);
  }

  void deliver(std::optional<pixels::PixelBuffer> sample) {
    camera.deliver(std::move(sample));
    queues.drain(kFrames);
  }

  support::FakeCapture camera;
  support::FakeSerialQueueFactory queues;
  std::vector<std::pair<int, double>> frames;  // Width and time.
  std::vector<std::pair<std::string, std::string>> errors;
  int returns = 0;
  CameraSource source{camera, queues};
};

TEST_F(CameraSourceTest, NothingHappensBeforeItIsStarted) {
  EXPECT_TRUE(queues.exists(kSession));
  EXPECT_TRUE(queues.exists(kFrames));
  EXPECT_EQ(queues.waiting(kSession), 0u);
  EXPECT_EQ(camera.starts, 0);
}

TEST_F(CameraSourceTest, StartReturnsAtOnceAndWorksOnTheSessionQueue) {
  source.start();

  EXPECT_FALSE(camera.running);
  queues.drain(kSession);
  EXPECT_TRUE(camera.running);
}

TEST_F(CameraSourceTest, FramesArriveWithTheirTimesOnTheFramesQueue) {
  start();
  camera.deliver(greyFrame(4, 3, 12.5));
  EXPECT_THAT(frames, IsEmpty());

  queues.drain(kFrames);

  EXPECT_THAT(frames, ElementsAre(Pair(4, 12.5)));
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CameraSourceTest, ASampleWithoutPictureDataIsDropped) {
  start();

  deliver(std::nullopt);

  EXPECT_THAT(frames, IsEmpty());
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CameraSourceTest, FramesWithoutACallbackAreDropped) {
  source.setOnFrame({});
  start();

  deliver(greyFrame(4, 3));

  EXPECT_THAT(frames, IsEmpty());
}

TEST_F(CameraSourceTest, PrefersTheHighDefinitionPreset) {
  start();

  EXPECT_THAT(camera.presets, ElementsAre(platform::CapturePreset::hd1280x720));
}

TEST_F(CameraSourceTest, ACameraWithoutThePresetKeepsItsDefaultAndFramesStillFlow) {
  camera.offers1280x720 = false;
  start();

  deliver(greyFrame(640, 480, 1));

  EXPECT_THAT(camera.presets, IsEmpty());
  EXPECT_THAT(frames, ElementsAre(Pair(640, 1.0)));
}

TEST_F(CameraSourceTest, WithoutACameraThereIsOneErrorAndNoFrame) {
  camera.present = false;

  start();

  EXPECT_THAT(errors, ElementsAre(Pair("No camera was found.",
                                       "AVCaptureDevice.default(for: .video) returned nil.")));
  EXPECT_EQ(camera.starts, 0);
}

TEST_F(CameraSourceTest, ALaterStartLooksForACameraAgain) {
  camera.present = false;
  start();
  camera.present = true;

  start();

  EXPECT_TRUE(camera.running);
  EXPECT_EQ(errors.size(), 1u);
}

TEST_F(CameraSourceTest, ACameraThatDoesNotOpenIsReportedWithTheReason) {
  camera.openError = "Device is busy.";

  start();

  EXPECT_THAT(errors, ElementsAre(Pair("The camera could not be opened.", "Device is busy.")));
  EXPECT_EQ(camera.starts, 0);
}

TEST_F(CameraSourceTest, ARefusedInputIsReportedWithTheNameOfTheCamera) {
  camera.takesInput = false;
  camera.name = "Desk Camera";

  start();

  EXPECT_THAT(errors,
              ElementsAre(Pair("The camera could not be used.",
                               "AVCaptureSession.canAddInput returned false for Desk Camera.")));
  EXPECT_EQ(camera.inputsAdded, 0);
}

TEST_F(CameraSourceTest, ARefusedOutputIsReported) {
  camera.takesOutput = false;

  start();

  EXPECT_THAT(errors, ElementsAre(Pair("The camera picture could not be read.",
                                       "AVCaptureSession.canAddOutput returned false.")));
  EXPECT_EQ(camera.starts, 0);
}

TEST_F(CameraSourceTest, AfterAFailureTheWholeConfigurationIsRepeated) {
  camera.takesOutput = false;
  start();
  camera.takesOutput = true;

  start();

  EXPECT_EQ(camera.inputsAdded, 2);
  EXPECT_EQ(camera.outputsAdded, 1);
  EXPECT_EQ(camera.presets.size(), 2u);
  EXPECT_TRUE(camera.running);
}

TEST_F(CameraSourceTest, WithoutAnErrorCallbackFailuresAreSilent) {
  source.setOnError({});
  camera.present = false;

  start();

  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CameraSourceTest, ASecondStartWhileRunningChangesNothing) {
  start();

  start();

  EXPECT_EQ(camera.inputsAdded, 1);
  EXPECT_EQ(camera.outputsAdded, 1);
  EXPECT_EQ(camera.starts, 1);
}

TEST_F(CameraSourceTest, ASecondStartAfterAPauseOnlyStartsTheSession) {
  start();
  camera.pause();

  start();

  EXPECT_EQ(camera.inputsAdded, 1);
  EXPECT_EQ(camera.outputsAdded, 1);
  EXPECT_EQ(camera.starts, 2);
}

TEST_F(CameraSourceTest, ThePictureAdvancesWhileOneAnalysisAtATimeRuns) {
  FrameHub hub;
  BusyFlag busy;
  std::vector<double> analysed;
  source.setOnFrame([&](const pixels::PixelBuffer& frame, double time) {
    hub.update(frame);
    if (busy.tryClaim()) analysed.push_back(time);
  });
  start();

  deliver(greyFrame(1, 1, 1));
  deliver(greyFrame(2, 1, 2));
  EXPECT_EQ(hub.image()->width(), 2);
  deliver(greyFrame(3, 1, 3));
  EXPECT_EQ(hub.image()->width(), 3);
  EXPECT_THAT(analysed, ElementsAre(1));

  busy.release();
  deliver(greyFrame(4, 1, 4));
  EXPECT_THAT(analysed, ElementsAre(1, 4));
}

TEST_F(CameraSourceTest, AFrameThatIsNoPictureStillReachesTheOwner) {
  start();

  deliver(pixels::PixelBuffer{.image = std::nullopt, .time = 7});

  EXPECT_THAT(frames, ElementsAre(Pair(0, 7.0)));
}

TEST_F(CameraSourceTest, ACameraThatRefusesToStartIsReportedAsNotOpened) {
  start();

  camera.failToStart("Another program uses it.");
  queues.drain(kSession);

  EXPECT_THAT(errors,
              ElementsAre(Pair("The camera could not be opened.", "Another program uses it.")));
}

TEST_F(CameraSourceTest, ACameraThatDeliversNothingIsReportedAsStopped) {
  start();

  camera.fallSilent("It delivers no picture.");
  queues.drain(kSession);

  EXPECT_THAT(errors, ElementsAre(Pair("The camera stopped.", "It delivers no picture.")));
}

TEST_F(CameraSourceTest, ACameraThatVanishesIsReportedOnTheSessionQueue) {
  start();

  camera.vanish("It was unplugged.");
  EXPECT_THAT(errors, IsEmpty());
  queues.drain(kSession);

  EXPECT_THAT(errors, ElementsAre(Pair("The camera stopped.", "It was unplugged.")));
}

TEST_F(CameraSourceTest, ACameraThatComesBackIsAnnouncedAndStartedOnlyByItsOwner) {
  start();
  camera.vanish("It was unplugged.");
  queues.drain(kSession);

  camera.comeBack();
  queues.drain(kSession);
  EXPECT_EQ(returns, 1);
  EXPECT_FALSE(camera.running);

  start();
  deliver(greyFrame(4, 3, 9));
  EXPECT_EQ(camera.inputsAdded, 1);
  EXPECT_THAT(frames, ElementsAre(Pair(4, 9.0)));
}

TEST_F(CameraSourceTest, AStopThatAStartHasOvertakenIsNotReported) {
  start();
  source.start();
  camera.vanish("It was unplugged.");
  camera.present = true;

  queues.drain(kSession);

  EXPECT_TRUE(camera.running);
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CameraSourceTest, CallbacksCanBeSetAnewWhileFramesFlow) {
  std::vector<double> times;
  start();
  deliver(greyFrame(1, 1, 1));

  source.setOnFrame([&](const pixels::PixelBuffer&, double time) { times.push_back(time); });
  deliver(greyFrame(1, 1, 2));

  EXPECT_THAT(frames, ElementsAre(Pair(1, 1.0)));
  EXPECT_THAT(times, ElementsAre(2));
}

TEST(CameraSource, NothingRunsOnceItHasEnded) {
  support::FakeCapture camera;
  support::FakeSerialQueueFactory queues;
  int frames = 0;
  {
    CameraSource source(camera, queues);
    source.setOnFrame([&](const pixels::PixelBuffer&, double) { ++frames; });
    source.start();
    queues.drain(kSession);
    camera.deliver(greyFrame(1, 1));
    source.start();
  }

  queues.drain(kSession);
  queues.drain(kFrames);
  camera.vanish("late");

  EXPECT_EQ(frames, 0);
  EXPECT_FALSE(camera.running);
}

}  // namespace
}  // namespace capture
