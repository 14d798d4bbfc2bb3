#include "ui/recording_indicator.h"

#include <gtest/gtest.h>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"
#include "ui/top_bar.h"

namespace ui {
namespace {

using support::button;
using support::press;

TEST(ElapsedTime, ReadsMinutesAndSeconds) {
  EXPECT_EQ(elapsedTime(0), "00:00");
  EXPECT_EQ(elapsedTime(9), "00:09");
  EXPECT_EQ(elapsedTime(65), "01:05");
}

TEST(ElapsedTime, FromAnHourOnTheMinutesGrow) {
  EXPECT_EQ(elapsedTime(61 * 60), "61:00");
  EXPECT_EQ(elapsedTime(6000 + 59), "100:59");
}

class RecordingInTheTopBar : public testing::Test {
 protected:
  RecordingInTheTopBar() {
    bar.resize(900, bar.sizeHint().height());
    bar.show();
    support::settle();
  }

  void startRecording() {
    machine.savePanel.willAnswer("/videos/a.mp4");
    press(bar, "Record Video");
    bar.refresh();
    support::settle();
  }
  QString elapsed() const { return indicator().findChild<QLabel*>()->text(); }
  RecordingIndicator& indicator() const { return *bar.findChild<RecordingIndicator*>(); }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  TopBar bar{model};
};

TEST_F(RecordingInTheTopBar, WithoutARecordingThereIsNoIndicator) {
  EXPECT_FALSE(indicator().isVisible());
  EXPECT_TRUE(button(bar, "Record Video")->isEnabled());
}

TEST_F(RecordingInTheTopBar, TheButtonStartsARecordingAndThenReadsStop) {
  startRecording();

  EXPECT_TRUE(model.isRecording());
  EXPECT_TRUE(indicator().isVisible());
  EXPECT_EQ(elapsed(), "00:00");
  EXPECT_TRUE(button(bar, "Stop")->isEnabled());
}

TEST_F(RecordingInTheTopBar, TheButtonsSymbolChangesWithItsTitle) {
  const auto symbol = [this](const char* title) {
    return button(bar, title)->icon().pixmap(16).toImage();
  };
  const QImage idle = symbol("Record Video");

  startRecording();

  EXPECT_FALSE(symbol("Stop").isNull());
  EXPECT_NE(symbol("Stop"), idle);
}

TEST_F(RecordingInTheTopBar, TheIndicatorShowsTheSecondsOfTheModel) {
  startRecording();
  machine.clock.advance(65.3);
  model.tick();

  bar.refresh();

  EXPECT_EQ(elapsed(), "01:05");
}

TEST_F(RecordingInTheTopBar, TheIndicatorStartsWithARedDot) {
  startRecording();

  const QColor dot = support::pixelAt(indicator(), {5, indicator().height() / 2});

  EXPECT_GT(dot.red(), 200);
  EXPECT_LT(dot.green(), 100);
  EXPECT_LT(dot.blue(), 100);
}

TEST_F(RecordingInTheTopBar, StopStopsTheRecording) {
  startRecording();

  press(bar, "Stop");
  bar.refresh();

  EXPECT_FALSE(model.isRecording());
  EXPECT_FALSE(indicator().isVisible());
  EXPECT_NE(button(bar, "Record Video"), nullptr);
}

TEST_F(RecordingInTheTopBar, AStartThatFailsLeavesTheButtonIdle) {
  machine.videoWriters.script.makingFails = platform::Error{"Permission denied"};

  startRecording();

  EXPECT_FALSE(indicator().isVisible());
  EXPECT_NE(button(bar, "Record Video"), nullptr);
}

}  // namespace
}  // namespace ui
