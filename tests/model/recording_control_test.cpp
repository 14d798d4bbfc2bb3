#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "model/app_model.h"
#include "render/canvas_renderer.h"
#include "tests/support/fake_platform.h"
#include "tests/support/observer_log.h"
#include "tests/support/pictures.h"

namespace model {
namespace {

using render::CanvasBackground;
using support::Announcement;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;
using Status = platform::VideoWriter::Status;
using Pixel = std::array<int, 3>;

const std::filesystem::path kChosen = "/videos/painting.mp4";
constexpr Pixel kBlack{0, 0, 0};
constexpr Pixel kWhite{255, 255, 255};

class RecordingControl : public testing::Test {
 protected:
  RecordingControl() { model->useMouseOnly(); }

  void startRecording() {
    machine.savePanel.willAnswer(kChosen);
    model->toggleRecording();
  }
  void recordFrame() {
    machine.clock.advance(0.05);
    machine.timers.fire();
  }
  /// All through the middle.
  void paintStrokes(int count) {
    for (int i = 0; i < count; ++i) {
      const double y = static_cast<double>(i) / count;
      model->mouseDown(0.1, y);
      for (int step = 1; step <= 8; ++step)
        model->mouseDragged(0.1 + 0.1 * step, y + (1 - 2 * y) * step / 8);
      model->mouseUp();
    }
  }
  void failWriter(const std::string& reason) {
    script.status = Status::failed;
    script.error = platform::Error{reason};
  }

  /// A pixel of the newest recorded frame, at canvas coordinates.
  Pixel recordedAt(double x, double y) const {
    const pixels::Surface& frame = script.frames.back().picture;
    const std::uint8_t* pixel =
        frame.row(static_cast<int>(y * frame.height())) + 4 * static_cast<int>(x * frame.width());
    return {pixel[0], pixel[1], pixel[2]};
  }

  support::FakePlatform machine;
  support::VideoWriterScript& script = machine.videoWriters.script;
  std::unique_ptr<AppModel> model = std::make_unique<AppModel>(machine.services());
};

TEST_F(RecordingControl, AsksForAnMpeg4NamedAfterTheLocalDateAndTimeInTheMoviesFolder) {
  model->toggleRecording();

  ASSERT_THAT(machine.savePanel.requests, SizeIs(1));
  EXPECT_EQ(machine.savePanel.requests[0].kind, platform::FileKind::mpeg4);
  EXPECT_EQ(machine.savePanel.requests[0].proposedName, "Wavescribe 2026-02-03 07.08.09.mp4");
  EXPECT_EQ(machine.savePanel.requests[0].proposedFolder, "/home/somebody/Videos");
}

TEST_F(RecordingControl, ProposesNoFolderWhereTheSystemNamesNone) {
  machine.folders.moviesFolder = std::nullopt;

  model->toggleRecording();

  EXPECT_EQ(machine.savePanel.requests.at(0).proposedFolder, std::nullopt);
}

TEST_F(RecordingControl, CancellingChangesNothingAndShowsNoMessage) {
  const support::ObserverLog log(*model);

  model->toggleRecording();

  EXPECT_THAT(log.announcements, IsEmpty());
  EXPECT_EQ(script.made, 0);
}

TEST_F(RecordingControl, RecordsTheCanvasWhereThePersonChose) {
  startRecording();

  EXPECT_TRUE(model->isRecording());
  EXPECT_EQ(script.path, kChosen);
  EXPECT_EQ(script.settings.width, 1280);
  EXPECT_EQ(script.settings.height, 720);
  EXPECT_EQ(script.settings.framesPerSecond, 30);
}

TEST_F(RecordingControl, TheVideoHasTheShapeOfTheCamerasPicture) {
  model->refreshPermission();
  machine.cameraPermission.answerRead(platform::CameraAuthorization::authorized);
  machine.serialQueues.drain("wavescribe.camera.session");
  machine.capture.deliver(support::greyFrame(640, 480));
  machine.serialQueues.drain("wavescribe.camera.frames");

  startRecording();

  EXPECT_EQ(script.settings.width, 1280);
  EXPECT_EQ(script.settings.height, 960);
}

TEST_F(RecordingControl, AStartSetsTheSecondsBackBeforeItIsAnnounced) {
  const support::ObserverLog log(*model);

  startRecording();

  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::recordSeconds, "0"},
                                             Announcement{Property::isRecording, "false"}));
}

TEST_F(RecordingControl, AFileThatIsReplacedIsRemovedFirst) {
  machine.files.files[kChosen] = {1, 2, 3};
  machine.files.files["/videos/other.mp4"] = {4};

  startRecording();

  EXPECT_THAT(machine.files.files, ElementsAre(Key("/videos/other.mp4")));
}

TEST_F(RecordingControl, AFileThatCannotBeRemovedIsNoFailure) {
  machine.files.failure = platform::Error{"Permission denied"};

  startRecording();

  EXPECT_TRUE(model->isRecording());
  EXPECT_EQ(model->errorMessage(), std::nullopt);
}

TEST_F(RecordingControl, AStartFailureIsShownAndLeavesTheButtonIdle) {
  script.makingFails = platform::Error{"/videos/painting.mp4: Permission denied"};

  startRecording();

  EXPECT_EQ(model->errorMessage(), "Recording could not start.");
  EXPECT_EQ(model->errorDetails(), "/videos/painting.mp4: Permission denied");
  EXPECT_FALSE(model->isRecording());
}

TEST_F(RecordingControl, SettingsThatTheWriterRefusesAreAStartFailure) {
  script.acceptsInput = false;

  startRecording();

  EXPECT_EQ(model->errorMessage(), "Recording could not start.");
  EXPECT_EQ(model->errorDetails(), "The video writer did not accept the video settings.");
}

TEST_F(RecordingControl, ATransparentBackgroundIsRecordedBlackBehindTheStrokes) {
  model->setBackground(CanvasBackground::transparent);
  startRecording();
  model->mouseDown(0.5, 0.5);

  recordFrame();

  EXPECT_EQ(recordedAt(0.1, 0.1), kBlack);
  EXPECT_NE(recordedAt(0.5, 0.5), kBlack);
}

TEST_F(RecordingControl, AChangedBackgroundChangesTheVideoFromTheNextFrameOn) {
  model->setBackground(CanvasBackground::black);
  startRecording();
  recordFrame();
  const Pixel before = recordedAt(0.1, 0.1);
  model->setBackground(CanvasBackground::white);

  recordFrame();

  EXPECT_EQ(before, kBlack);
  EXPECT_EQ(recordedAt(0.1, 0.1), kWhite);
}

TEST_F(RecordingControl, TheVideoShowsTheCursor) {
  model->setBackground(CanvasBackground::black);
  model->setGlow(false);
  model->mouseDown(0.5, 0.5);
  model->mouseUp();
  startRecording();
  recordFrame();
  const pixels::Surface withoutCursor = script.frames.back().picture;
  model->undo();
  model->mouseDown(0.5, 0.5);

  recordFrame();

  EXPECT_NE(script.frames.back().picture, withoutCursor);
}

TEST_F(RecordingControl, AVideoShowsALargePaintingFromTheFirstFrameOn) {
  paintStrokes(150);
  startRecording();

  recordFrame();

  const pixels::Surface& frame = script.frames.back().picture;
  EXPECT_EQ(frame, render::CanvasRenderer::makeImage(
                       model->makeScene(CanvasBackground::black, true),
                       {static_cast<double>(frame.width()), static_cast<double>(frame.height())}));
}

TEST_F(RecordingControl, AVideoNeverLosesThePaintingWhileItIsBuiltUpAnew) {
  paintStrokes(150);
  startRecording();
  recordFrame();

  model->setGlow(false);
  recordFrame();

  EXPECT_NE(recordedAt(0.5, 0.5), kBlack);
}

TEST_F(RecordingControl, CountsWholeSecondsWhileItRuns) {
  startRecording();
  machine.clock.advance(2.9);

  model->tick();

  EXPECT_EQ(model->recordSeconds(), 2);
}

TEST_F(RecordingControl, SecondsAreAnnouncedOnlyWhenTheyChange) {
  startRecording();
  machine.clock.advance(1.2);
  model->tick();
  const support::ObserverLog log(*model);
  machine.clock.advance(0.5);

  model->tick();

  EXPECT_THAT(log.announcements, IsEmpty());
}

TEST_F(RecordingControl, SecondsKeepTheirLastValueUntilTheNextStart) {
  startRecording();
  machine.clock.advance(5);
  model->tick();
  model->toggleRecording();
  machine.clock.advance(5);
  model->tick();
  const auto afterStop = model->recordSeconds();

  startRecording();

  EXPECT_EQ(afterStop, 5);
  EXPECT_EQ(model->recordSeconds(), 0);
}

TEST_F(RecordingControl, AStopFinishesTheFileWithoutAWord) {
  startRecording();
  recordFrame();

  model->toggleRecording();
  const bool finishing = model->isFinishingRecording();
  machine.mainQueue.drain();

  EXPECT_FALSE(model->isRecording());
  EXPECT_TRUE(finishing);
  EXPECT_FALSE(model->isFinishingRecording());
  EXPECT_EQ(script.steps.back(), "finishWriting");
  EXPECT_EQ(model->errorMessage(), std::nullopt);
  EXPECT_THAT(machine.savePanel.requests, SizeIs(1));
}

TEST_F(RecordingControl, AFinishThatFailsIsShown) {
  startRecording();
  script.statusWhenFinished = Status::failed;
  script.error = platform::Error{"No space left on device"};

  model->toggleRecording();
  machine.mainQueue.drain();

  EXPECT_EQ(model->errorMessage(), "The video could not be saved.");
  EXPECT_EQ(model->errorDetails(), "No space left on device");
}

TEST_F(RecordingControl, AFailureWhileRecordingStopsItAndIsShown) {
  startRecording();
  failWriter("No space left on device");

  recordFrame();
  machine.mainQueue.drain();

  EXPECT_FALSE(model->isRecording());
  EXPECT_EQ(model->errorMessage(), "Recording stopped because of an error.");
  EXPECT_EQ(model->errorDetails(), "No space left on device");
  EXPECT_EQ(script.ended, 1);
}

TEST_F(RecordingControl, AStopBeforeTheFailureWasSeenTellsThatTheVideoCouldNotBeSaved) {
  startRecording();
  failWriter("No space left on device");

  model->toggleRecording();

  EXPECT_EQ(model->errorMessage(), "The video could not be saved.");
  EXPECT_EQ(model->errorDetails(), "No space left on device");
}

TEST_F(RecordingControl, AfterAFailureTheNextRecordingStarts) {
  startRecording();
  failWriter("No space left on device");
  recordFrame();
  script.error = std::nullopt;

  startRecording();

  EXPECT_TRUE(model->isRecording());
}

TEST_F(RecordingControl, ClosingRecordingsFinishesTheVideoWithoutAWord) {
  startRecording();
  recordFrame();
  script.finishesAtOnce = false;

  model->closeRecordings();

  EXPECT_EQ(script.steps.back(), "finishWriting");
  EXPECT_EQ(script.ended, 1);
  EXPECT_FALSE(model->isFinishingRecording());
  EXPECT_EQ(model->errorMessage(), std::nullopt);
}

TEST_F(RecordingControl, TheEndOfTheModelEndsTheWriter) {
  startRecording();

  model.reset();
  machine.timers.fire();

  EXPECT_EQ(script.ended, 1);
}

}  // namespace
}  // namespace model
