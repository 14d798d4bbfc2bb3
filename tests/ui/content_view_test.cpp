#include "ui/content_view.h"

#include <gtest/gtest.h>

#include <QLayout>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using support::button;
using support::settle;

class ContentViewTest : public testing::Test {
 protected:
  ContentViewTest() {
    view.resize(1280, 680);
    view.show();
    settle();
  }

  void fail() {
    machine.savePanel.willAnswer("/pictures/a.png");
    machine.files.failure = platform::Error{"disk full"};
    model.saveImage(false);
    settle();
  }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  ContentView view{model, machine.timers};
};

TEST_F(ContentViewTest, TheDrawingAreaLiesBetweenItsBarsAndTheSettings) {
  auto* topBar = button(view, "Undo")->parentWidget();
  auto* statusBar = support::label(view, "Camera off")->parentWidget();
  auto* sidebar = view.findChild<QScrollArea*>("", Qt::FindDirectChildrenOnly);
  ASSERT_TRUE(sidebar);
  QWidget* paintView = view.childAt(400, 300);

  EXPECT_EQ(paintView->accessibleName(), "Canvas");
  EXPECT_EQ(topBar->geometry().topLeft(), QPoint(0, 0));
  EXPECT_EQ(paintView->geometry().topLeft(), QPoint(0, topBar->height()));
  EXPECT_EQ(statusBar->y(), paintView->geometry().bottom() + 1);
  EXPECT_EQ(statusBar->geometry().bottom(), 679);
  EXPECT_EQ(sidebar->geometry(), QRect(1280 - 250, 0, 250, 680));
  EXPECT_EQ(paintView->width(), 1280 - 250 - 1);
}

TEST_F(ContentViewTest, CannotBeSmallerThan960By620) {
  EXPECT_EQ(view.minimumSize(), QSize(960, 620));
  EXPECT_LE(view.layout()->minimumSize().width(), 960);
  EXPECT_LE(view.layout()->minimumSize().height(), 620);
}

TEST_F(ContentViewTest, ARecordingFitsTheSmallestWindow) {
  machine.savePanel.willAnswer("/videos/a.mp4");
  model.toggleRecording();
  support::settle();

  EXPECT_LE(view.layout()->minimumSize().width(), 960);
}

TEST_F(ContentViewTest, AChangeOfTheModelIsShown) {
  model.mouseDown(0.5, 0.5);
  model.mouseUp();
  settle();

  EXPECT_TRUE(button(view, "Undo")->isEnabled());
}

TEST_F(ContentViewTest, TheBannerFloatsOverTheDrawingArea) {
  const QRect paint = view.childAt(400, 300)->geometry();
  fail();

  QWidget* banner = button(view, "Dismiss")->parentWidget();
  ASSERT_TRUE(banner->isVisible());
  const int room = ErrorBanner::kShadowRoom;
  const QRect card = banner->geometry().adjusted(room, room, -room, -room);
  EXPECT_EQ(card.topLeft(), paint.topLeft() + QPoint(10, 10));
  EXPECT_EQ(card.right(), paint.right() - 10);
  EXPECT_LT(card.height(), 60);
  const QWidget* onTop = view.childAt(card.center());
  EXPECT_TRUE(onTop == banner || banner->isAncestorOf(onTop));
  EXPECT_EQ(view.childAt(400, 300)->geometry(), paint);
}

TEST_F(ContentViewTest, TheModelsFlagsOpenTheDialogs) {
  const auto* confirmation = support::label(view, "Clear the painting?")->window();
  const auto* choice = support::label(view, "Save image")->window();

  model.setShowClearConfirm(true);
  settle();
  EXPECT_TRUE(confirmation->isVisible());
  model.setShowClearConfirm(false);
  settle();
  EXPECT_FALSE(confirmation->isVisible());

  model.setShowSaveChoice(true);
  settle();
  EXPECT_TRUE(choice->isVisible());
}

}  // namespace
}  // namespace ui
