#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "model/app_model.h"
#include "tests/support/fake_platform.h"
#include "tests/support/pictures.h"

namespace model {
namespace {

using Kind = CameraState::Kind;
using platform::CameraAuthorization;
using support::greyFrame;

constexpr const char* kSession = "wavescribe.camera.session";
constexpr const char* kFrames = "wavescribe.camera.frames";
constexpr const char* kVision = "wavescribe.vision";

class CameraFramesTest : public testing::Test {
 protected:
  void startCamera() {
    model.refreshPermission();
    machine.cameraPermission.answerRead(CameraAuthorization::authorized);
    machine.serialQueues.drain(kSession);
    machine.mainQueue.drain();
  }

  /// A frame arrives; its analysis waits.
  void deliver(const pixels::PixelBuffer& frame) {
    machine.capture.deliver(frame);
    machine.serialQueues.drain(kFrames);
  }

  void analyse() {
    machine.serialQueues.drain(kVision);
    machine.mainQueue.drain();
  }

  /// What the camera source reports reaches the model.
  void settle() {
    machine.serialQueues.drain(kSession);
    machine.mainQueue.drain();
  }

  void expectToRunAgainWhenTheCameraReturns() {
    machine.capture.comeBack();
    settle();
    machine.cameraPermission.answerRead(CameraAuthorization::authorized);
    settle();
    deliver(greyFrame(640, 480));

    EXPECT_EQ(model.cameraState().kind, Kind::running);
    EXPECT_EQ(model.errorMessage(), std::nullopt);
    EXPECT_EQ(picture()->width(), 640);
  }

  std::optional<pixels::Image> picture() const {
    return model.makeScene(render::CanvasBackground::camera, false).frame;
  }

  int analysed() const { return machine.handPoseRequest.performCount(); }

  support::FakePlatform machine;
  AppModel model{machine.services()};
};

TEST_F(CameraFramesTest, TheStateIsRunningAtOnceAndTheCameraFollows) {
  model.refreshPermission();
  machine.cameraPermission.answerRead(CameraAuthorization::authorized);

  EXPECT_EQ(model.cameraState().kind, Kind::running);
  EXPECT_FALSE(machine.capture.running);
  settle();
  EXPECT_TRUE(machine.capture.running);
}

TEST_F(CameraFramesTest, ACameraThatIsMissingFailsInItsOwnWords) {
  machine.capture.present = false;

  startCamera();

  EXPECT_EQ(model.cameraState(), CameraState::failed("No camera was found."));
  EXPECT_EQ(model.errorMessage(), "No camera was found.");
  EXPECT_EQ(model.errorDetails(), "AVCaptureDevice.default(for: .video) returned nil.");
}

TEST_F(CameraFramesTest, ACameraThatFailsAtTheStartIsNotTriedAgain) {
  machine.capture.openError = "Device is busy.";
  startCamera();
  machine.capture.openError.reset();

  machine.activation.becomeActive();
  settle();

  EXPECT_EQ(model.cameraState(), CameraState::failed("The camera could not be opened."));
  EXPECT_FALSE(machine.capture.running);
}

TEST_F(CameraFramesTest, EveryFrameBecomesThePictureOnTheCanvas) {
  startCamera();
  const auto frame = greyFrame(1280, 720);

  deliver(frame);

  ASSERT_TRUE(picture());
  EXPECT_TRUE(picture()->sharesPixelsWith(*frame.image));
}

TEST_F(CameraFramesTest, FramesDuringAnAnalysisShowButAreNotAnalysed) {
  startCamera();
  deliver(greyFrame(1, 1));

  deliver(greyFrame(2, 1));
  EXPECT_EQ(picture()->width(), 2);
  deliver(greyFrame(3, 1));
  EXPECT_EQ(picture()->width(), 3);

  analyse();
  EXPECT_EQ(analysed(), 1);
}

TEST_F(CameraFramesTest, TheNextFrameAfterAnAnalysisIsAnalysed) {
  startCamera();
  deliver(greyFrame(1, 1));
  analyse();

  deliver(greyFrame(2, 1));
  analyse();

  EXPECT_EQ(analysed(), 2);
}

TEST_F(CameraFramesTest, TheNextAnalysisNeedNotWaitForTheMainThread) {
  startCamera();
  deliver(greyFrame(1, 1));
  machine.serialQueues.drain(kVision);

  deliver(greyFrame(2, 1));
  machine.serialQueues.drain(kVision);

  EXPECT_EQ(analysed(), 2);
  EXPECT_EQ(machine.mainQueue.waiting(), 2u);
}

TEST_F(CameraFramesTest, AFrameThatIsNoPictureKeepsThePictureBefore) {
  startCamera();
  deliver(greyFrame(4, 3));

  deliver({.image = std::nullopt, .time = 1});

  EXPECT_EQ(picture()->width(), 4);
}

TEST_F(CameraFramesTest, TheCanvasHasTheShapeOfTheCamerasPicture) {
  startCamera();
  EXPECT_EQ(model.canvasAspect(), 16.0 / 9.0);

  deliver(greyFrame(1280, 720));
  EXPECT_EQ(model.canvasAspect(), 16.0 / 9.0);

  deliver(greyFrame(640, 480));
  EXPECT_EQ(model.canvasAspect(), 4.0 / 3.0);
}

TEST_F(CameraFramesTest, TheCanvasIsSixteenToNineInEveryStateButRunning) {
  startCamera();
  deliver(greyFrame(640, 480));
  ASSERT_EQ(model.canvasAspect(), 4.0 / 3.0);

  for (const auto answer : {CameraAuthorization::notDetermined, CameraAuthorization::restricted,
                            CameraAuthorization::denied, CameraAuthorization::unknown}) {
    model.refreshPermission();
    machine.cameraPermission.answerRead(answer);
    EXPECT_EQ(model.canvasAspect(), 16.0 / 9.0);
  }
  model.useMouseOnly();
  EXPECT_EQ(model.canvasAspect(), 16.0 / 9.0);
}

TEST_F(CameraFramesTest, ACameraThatVanishesIsReported) {
  startCamera();

  machine.capture.vanish("It was unplugged.");
  settle();

  EXPECT_EQ(model.cameraState(), CameraState::failed("The camera stopped."));
  EXPECT_EQ(model.errorMessage(), "The camera stopped.");
  EXPECT_EQ(model.errorDetails(), "It was unplugged.");
}

TEST_F(CameraFramesTest, ACameraThatDeliversNothingAtFirstIsToldAndTriedAgain) {
  startCamera();
  machine.capture.fallSilent("It delivers no picture.");
  settle();
  EXPECT_EQ(model.cameraState(), CameraState::failed("The camera stopped."));

  expectToRunAgainWhenTheCameraReturns();
}

TEST_F(CameraFramesTest, ACameraThatComesBackRunsAgainWithoutAClick) {
  startCamera();
  machine.capture.vanish("It was unplugged.");
  settle();

  expectToRunAgainWhenTheCameraReturns();
}

TEST_F(CameraFramesTest, ACameraThatComesBackIsNotUsedWhenItIsForbiddenByNow) {
  startCamera();
  machine.capture.vanish("It was unplugged.");
  settle();

  machine.capture.comeBack();
  settle();
  machine.cameraPermission.answerRead(CameraAuthorization::denied);
  settle();

  EXPECT_EQ(model.cameraState().kind, Kind::denied);
  EXPECT_FALSE(machine.capture.running);
}

TEST_F(CameraFramesTest, ACameraThatComesBackDoesNotDisturbWhoChoseTheMouse) {
  startCamera();
  machine.capture.vanish("It was unplugged.");
  settle();
  model.useMouseOnly();
  const int reads = machine.cameraPermission.reads;

  machine.capture.comeBack();
  settle();

  EXPECT_EQ(machine.cameraPermission.reads, reads);
  EXPECT_EQ(model.cameraState().kind, Kind::mouseOnly);
}

TEST_F(CameraFramesTest, AReturnLeavesAnotherErrorOnTheBanner) {
  startCamera();
  machine.capture.vanish("It was unplugged.");
  settle();
  machine.capture.comeBack();
  machine.serialQueues.drain(kSession);
  machine.files.failure = platform::Error{"disk full"};
  machine.savePanel.willAnswer("painting.png");
  model.saveImage(false);
  ASSERT_NE(model.errorMessage(), "The camera stopped.");
  const auto message = model.errorMessage();

  settle();

  EXPECT_EQ(model.errorMessage(), message);
}

TEST(CameraFrames, WhatIsUnderWayWhenTheModelGoesIsDropped) {
  support::FakePlatform machine;
  auto model = std::make_unique<AppModel>(machine.services());
  model->refreshPermission();
  machine.cameraPermission.answerRead(CameraAuthorization::authorized);
  machine.serialQueues.drain(kSession);
  machine.capture.deliver(greyFrame(4, 3));
  machine.serialQueues.drain(kFrames);
  machine.serialQueues.drain(kVision);
  machine.capture.vanish("It was unplugged.");
  machine.serialQueues.drain(kSession);
  machine.capture.deliver(greyFrame(4, 3));
  ASSERT_GT(machine.mainQueue.waiting(), 0u);

  model.reset();

  machine.mainQueue.drain();
  machine.serialQueues.drain(kFrames);
  machine.serialQueues.drain(kVision);
  EXPECT_FALSE(machine.capture.running);
}

}  // namespace
}  // namespace model
