#include "ui/first_run_view.h"

#include <gtest/gtest.h>

#include <QTest>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"
#include "ui/content_view.h"

namespace ui {
namespace {

using platform::CameraAuthorization;
using support::settle;
using Kind = model::CameraState::Kind;

// Beside the card, where nothing of the first-run view but its veil is.
constexpr QPoint kOnTheCanvas(100, 300);

class FirstRunViewTest : public testing::Test {
 protected:
  FirstRunViewTest() {
    view.resize(1280, 680);
    view.show();
    view.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  void answer(CameraAuthorization authorization) {
    machine.cameraPermission.answerRead(authorization);
    settle();
  }

  FirstRunView& firstRun() { return *view.findChild<FirstRunView*>(); }

  QStringList visibleTexts() {
    QStringList texts;
    for (auto* label : firstRun().findChildren<QLabel*>()) {
      if (label->isVisible()) texts << label->text();
    }
    return texts;
  }

  QStringList visibleButtons() {
    QStringList texts;
    for (auto* candidate : firstRun().findChildren<QPushButton*>()) {
      if (candidate->isVisible()) texts << candidate->text();
    }
    return texts;
  }

  void pressReturn() {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
  }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  ContentView view{model, machine.timers};
};

TEST_F(FirstRunViewTest, ThePermissionIsLookedUpWhenTheWindowIsFirstShown) {
  EXPECT_EQ(machine.cameraPermission.reads, 1);
}

TEST_F(FirstRunViewTest, ThePermissionIsNotLookedUpAgainWhenTheWindowComesBack) {
  view.hide();
  view.show();
  settle();

  EXPECT_EQ(machine.cameraPermission.reads, 1);
}

TEST(FirstRun, ThePermissionIsLeftAloneWhenTheQuestionIsSettled) {
  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  model.useMouseOnly();
  ContentView view{model, machine.timers};

  view.show();
  settle();

  EXPECT_EQ(machine.cameraPermission.reads, 0);
}

TEST_F(FirstRunViewTest, IsAbsentWhileThePermissionIsBeingLookedUp) {
  EXPECT_FALSE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, IsAbsentOnceTheCameraRuns) {
  answer(CameraAuthorization::authorized);

  EXPECT_FALSE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, IsAbsentWhileThePersonPaintsWithTheMouseOnly) {
  answer(CameraAuthorization::denied);
  ASSERT_TRUE(firstRun().isVisible());

  model.useMouseOnly();
  settle();

  EXPECT_FALSE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, IsAbsentAfterAFailure) {
  answer(CameraAuthorization::unknown);

  EXPECT_FALSE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, GreetsAndAsksForTheCamera) {
  answer(CameraAuthorization::notDetermined);

  EXPECT_TRUE(firstRun().isVisible());
  EXPECT_EQ(firstRun().geometry(), view.rect());
  EXPECT_EQ(
      visibleTexts(),
      QStringList({"Welcome to Wavescribe",
                   "Paint in the air: pinch your thumb and finger to draw, open your hand to stop.",
                   "Your camera picture is analysed live on this Mac.",
                   "It is never saved or sent anywhere unless you save an image or video yourself.",
                   "Wavescribe contains no network code."}));
  EXPECT_EQ(visibleButtons(), QStringList({"Allow Camera", "Use Mouse Only"}));
}

TEST_F(FirstRunViewTest, SaysThatAccessIsTurnedOff) {
  answer(CameraAuthorization::denied);

  EXPECT_EQ(support::label(firstRun(), "Camera access is turned off")->text(),
            "Camera access is turned off for Wavescribe. Turn it on in System Settings, then come "
            "back to this window.");
  EXPECT_EQ(visibleButtons(), QStringList({"Open System Settings", "Use Mouse Only"}));
}

TEST_F(FirstRunViewTest, SaysThatAccessIsRestricted) {
  answer(CameraAuthorization::restricted);

  EXPECT_EQ(support::label(firstRun(), "Camera access is restricted")->text(),
            "Camera access is restricted on this Mac (for example by a device policy), so "
            "Wavescribe cannot use it.");
  EXPECT_EQ(visibleButtons(), QStringList({"Open System Settings", "Use Mouse Only"}));
}

TEST_F(FirstRunViewTest, ReturnAsksForTheCamera) {
  answer(CameraAuthorization::notDetermined);

  pressReturn();

  EXPECT_EQ(machine.cameraPermission.requests, 1);
}

TEST_F(FirstRunViewTest, ReturnOpensTheSettingsAfterARefusal) {
  answer(CameraAuthorization::denied);

  pressReturn();

  EXPECT_EQ(machine.settingsPage.cameraPrivacyOpened, 1);
  EXPECT_TRUE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, ReturnChoosesTheMouseWhenAPolicyBarsTheCamera) {
  answer(CameraAuthorization::restricted);

  pressReturn();

  EXPECT_EQ(model.cameraState().kind, Kind::mouseOnly);
  EXPECT_FALSE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, EveryButtonDoesWhatItSays) {
  answer(CameraAuthorization::denied);
  support::press(firstRun(), "Open System Settings");
  EXPECT_EQ(machine.settingsPage.cameraPrivacyOpened, 1);

  model.refreshPermission();
  answer(CameraAuthorization::notDetermined);
  support::press(firstRun(), "Allow Camera");
  EXPECT_EQ(machine.cameraPermission.requests, 1);

  support::press(firstRun(), "Use Mouse Only");
  EXPECT_EQ(model.cameraState().kind, Kind::mouseOnly);
}

TEST_F(FirstRunViewTest, IsGoneOnceThePersonHasAgreed) {
  answer(CameraAuthorization::notDetermined);
  pressReturn();

  machine.cameraPermission.answerRequest(true);
  settle();

  EXPECT_FALSE(firstRun().isVisible());
}

TEST_F(FirstRunViewTest, TheCanvasHasTheKeyboardAfterwards) {
  answer(CameraAuthorization::notDetermined);
  EXPECT_NE(QApplication::focusWidget()->accessibleName(), "Canvas");

  support::press(firstRun(), "Use Mouse Only");

  EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "Canvas");
}

TEST_F(FirstRunViewTest, WhatItCoversTakesNoKeysMeanwhile) {
  answer(CameraAuthorization::notDetermined);

  for (int i = 0; i < 20; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(firstRun().isAncestorOf(QApplication::focusWidget()) ||
                QApplication::focusWidget() == &firstRun());
  }
}

TEST_F(FirstRunViewTest, TheCardStaysNarrowInAWideWindowAndItsTextWraps) {
  answer(CameraAuthorization::restricted);
  view.resize(2400, 900);
  settle();

  const QWidget* card = support::label(firstRun(), "Welcome")->parentWidget();
  EXPECT_EQ(card->width(), 560);
  EXPECT_NEAR(card->geometry().center().x(), 1200, 2);
  EXPECT_NEAR(card->geometry().center().y(), 450, 3);
  const QLabel* message = support::label(firstRun(), "Camera access is restricted");
  EXPECT_GT(message->height(), 2 * message->fontMetrics().height() - 2);
}

TEST_F(FirstRunViewTest, EverythingFitsIntoTheSmallestWindow) {
  answer(CameraAuthorization::restricted);
  view.resize(view.minimumSize());
  settle();

  for (const QWidget* child : firstRun().findChildren<QWidget*>()) {
    if (!child->isVisible()) continue;
    const QRect place(child->mapTo(&view, QPoint(0, 0)), child->size());
    EXPECT_TRUE(view.rect().contains(place));
  }
}

TEST_F(FirstRunViewTest, TheWindowShowsThroughOnlyFaintly) {
  answer(CameraAuthorization::notDetermined);
  model.setBackground(render::CanvasBackground::black);
  settle();
  const int dark = support::pixelAt(view, kOnTheCanvas).lightness();

  model.setBackground(render::CanvasBackground::white);
  settle();
  const int light = support::pixelAt(view, kOnTheCanvas).lightness();

  // The canvas goes from black to white, of which three in a hundred come through the veil.
  EXPECT_NEAR(light - dark, 0.03 * 255, 2);
  EXPECT_NEAR(light, view.palette().color(QPalette::Window).lightness(), 0.03 * 255 + 1);
}

}  // namespace
}  // namespace ui
