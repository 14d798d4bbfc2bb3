#include <gtest/gtest.h>

#include <QMenuBar>

#include "app/main_window.h"
#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace app {
namespace {

using support::settle;
using Status = platform::VideoWriter::Status;

class RecordingInTheWindow : public testing::Test {
 protected:
  RecordingInTheWindow() {
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }

  QAction* command() {
    for (QAction* top : window.menuBar()->actions()) {
      if (top->text().remove('&') == "Painting") return top->menu()->actions().at(1);
    }
    return nullptr;
  }
  QString title() { return command()->text().remove('&'); }

  void pressCtrlR() {
    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    settle();
  }
  void startRecording() {
    machine.savePanel.willAnswer("/videos/a.mp4");
    pressCtrlR();
    ASSERT_TRUE(model.isRecording());
  }

  void failToStart() {
    script.makingFails = platform::Error{"Permission denied"};
    machine.savePanel.willAnswer("/videos/a.mp4");
    pressCtrlR();
    script.makingFails = std::nullopt;
  }
  void finishSoon() {
    QTimer::singleShot(50, &window, [this] {
      script.finish();
      machine.mainQueue.drain();
    });
  }

  support::FakePlatform machine;
  support::VideoWriterScript& script = machine.videoWriters.script;
  model::AppModel model{machine.services()};
  MainWindow window{model, machine.timers};
};

TEST_F(RecordingInTheWindow, CtrlRStartsARecordingAndTheCommandThenReadsStop) {
  const QString before = title();

  startRecording();

  EXPECT_EQ(before, "Record Video…");
  EXPECT_EQ(title(), "Stop Recording");
}

TEST_F(RecordingInTheWindow, CtrlRStopsARecordingThatRuns) {
  startRecording();

  pressCtrlR();

  EXPECT_FALSE(model.isRecording());
  EXPECT_EQ(title(), "Record Video…");
}

TEST_F(RecordingInTheWindow, AFailureGivesTheCommandItsTitleBack) {
  startRecording();
  script.status = Status::failed;

  machine.timers.fire();
  settle();

  EXPECT_EQ(title(), "Record Video…");
}

TEST_F(RecordingInTheWindow, ClosingWithoutARecordingClosesAtOnce) {
  EXPECT_TRUE(window.close());
}

TEST_F(RecordingInTheWindow, ClosingWhileRecordingFinishesTheVideoAndGoesAway) {
  script.finishesAtOnce = false;
  startRecording();

  const bool closed = window.close();

  EXPECT_FALSE(closed);
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(model.isRecording());
  EXPECT_EQ(script.steps.back(), "finishWriting");
}

TEST_F(RecordingInTheWindow, TheProgramEndsWhenTheVideoIsFinished) {
  script.finishesAtOnce = false;
  startRecording();
  window.close();
  finishSoon();

  QApplication::exec();

  EXPECT_FALSE(model.isFinishingRecording());
}

TEST_F(RecordingInTheWindow, AVideoThatCannotBeFinishedBringsTheWindowBack) {
  script.statusWhenFinished = Status::failed;
  script.error = platform::Error{"No space left on device"};
  startRecording();
  window.close();

  machine.mainQueue.drain();

  EXPECT_TRUE(QTest::qWaitFor([this] { return window.isVisible(); }));
  EXPECT_EQ(model.errorMessage(), "The video could not be saved.");
}

TEST_F(RecordingInTheWindow, ARecordingThatHasFailedKeepsTheWindowOpenToTell) {
  startRecording();
  script.status = Status::failed;

  EXPECT_FALSE(window.close());

  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(model.errorMessage(), "The video could not be saved.");
  EXPECT_TRUE(window.close());
}

TEST_F(RecordingInTheWindow, AnOldErrorDoesNotKeepTheWindowOpen) {
  failToStart();
  script.finishesAtOnce = false;
  startRecording();
  window.close();
  finishSoon();

  QApplication::exec();

  EXPECT_FALSE(window.isVisible());
}

TEST_F(RecordingInTheWindow, NorDoesAnErrorFromBeforeAVideoThatIsStillFinished) {
  script.finishesAtOnce = false;
  startRecording();
  pressCtrlR();
  failToStart();
  script.status = Status::writing;
  ASSERT_TRUE(model.errorMessage());
  window.close();
  finishSoon();

  QApplication::exec();

  EXPECT_FALSE(window.isVisible());
}

TEST_F(RecordingInTheWindow, TheEndOfTheSessionWaitsForTheVideo) {
  script.finishesAtOnce = false;
  startRecording();
  finishSoon();

  window.finishRecording();

  EXPECT_FALSE(model.isRecording());
  EXPECT_FALSE(model.isFinishingRecording());
  EXPECT_TRUE(window.isVisible());
}

}  // namespace
}  // namespace app
