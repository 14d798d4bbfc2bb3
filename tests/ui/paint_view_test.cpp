#include "ui/paint_view.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QDialog>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTabletEvent>
#include <QVBoxLayout>
#include <optional>
#include <vector>

#include "render/canvas_renderer.h"
#include "tests/support/fake_platform.h"
#include "tests/support/observer_log.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using render::CanvasBackground;
using support::pixelAt;
using support::settle;
using testing::IsEmpty;
using testing::SizeIs;

class PaintViewTest : public testing::Test {
 protected:
  PaintViewTest() {
    model.setBackground(CanvasBackground::black);
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view);
    window.resize(640, 480);  // The canvas: 640 x 360, from 60 points below the top.
    window.show();
    settle();
  }

  std::optional<render::CursorState> cursor() const {
    return model.makeScene(CanvasBackground::black, true).cursor;
  }

  strokes::StrokePoint firstPoint() const { return model.store().strokes().at(0).points[0]; }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  QWidget window;
  PaintView* view = new PaintView(model, machine.timers);
};

TEST_F(PaintViewTest, TicksThirtyTimesASecondWhileItIsShown) {
  EXPECT_EQ(machine.timers.running(), 1U);
  EXPECT_DOUBLE_EQ(machine.timers.newestInterval(), 1.0 / 30.0);
}

TEST_F(PaintViewTest, EachFiringTicksTheModel) {
  model.setFadeEnabled(true);
  model.mouseDown(0.5, 0.5);
  model.mouseUp();
  machine.clock.advance(100);

  machine.timers.fire();

  EXPECT_EQ(model.strokeCount(), 0);
}

struct PaintCounter : QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted.push_back(static_cast<QPaintEvent*>(event)->rect());
    return false;
  }
  std::vector<QRect> painted;
};

TEST_F(PaintViewTest, EachFiringPaintsWhatChangedSinceTheLast) {
  machine.timers.fire();
  settle();
  PaintCounter counter;
  view->installEventFilter(&counter);

  model.mouseDown(0.5, 0.5);
  machine.timers.fire();
  settle();

  ASSERT_THAT(counter.painted, SizeIs(1));
  EXPECT_TRUE(counter.painted[0].contains(QPoint(320, 240)));
  EXPECT_LT(counter.painted[0].width(), 640);
}

TEST_F(PaintViewTest, WhatComesAfterAFiringIsDrawnByTheNextOne) {
  machine.timers.fire();
  settle();
  model.mouseDown(0.25, 0.5);
  machine.timers.fire();
  PaintCounter counter;
  view->installEventFilter(&counter);

  model.mouseDragged(0.4, 0.5);
  settle();
  ASSERT_THAT(counter.painted, SizeIs(1));
  machine.timers.fire();
  settle();

  ASSERT_THAT(counter.painted, SizeIs(2));
  EXPECT_TRUE(counter.painted[1].contains(QPoint(256, 240)));
}

TEST_F(PaintViewTest, AFiringWithoutAChangePaintsNothing) {
  machine.timers.fire();
  settle();
  PaintCounter counter;
  view->installEventFilter(&counter);

  machine.timers.fire();
  settle();

  EXPECT_THAT(counter.painted, IsEmpty());
}

TEST_F(PaintViewTest, WhatChangedOutsideOfAPartialPaintingIsPaintedNext) {
  machine.timers.fire();
  settle();
  model.mouseDown(0.5, 0.5);
  PaintCounter counter;
  view->installEventFilter(&counter);

  view->repaint(QRect(0, 70, 10, 10));
  settle();

  ASSERT_THAT(counter.painted, SizeIs(2));
  EXPECT_TRUE(counter.painted[1].contains(QPoint(320, 240)));
}

TEST_F(PaintViewTest, RemovingTheViewFromItsWindowStopsItsTimer) {
  view->setParent(nullptr);

  EXPECT_EQ(machine.timers.running(), 0U);
  delete view;
}

TEST_F(PaintViewTest, MovingTheViewToAnotherWindowStartsAFreshTimer) {
  QWidget other;
  other.show();

  view->setParent(&other);
  view->show();

  EXPECT_EQ(machine.timers.running(), 1U);
}

TEST_F(PaintViewTest, HidingTheWindowStopsTheTimer) {
  window.hide();

  EXPECT_EQ(machine.timers.running(), 0U);
}

TEST_F(PaintViewTest, TheCanvasLiesInTheMiddleOfTheWindowsColour) {
  const QColor around = view->palette().color(QPalette::Window);

  EXPECT_EQ(pixelAt(*view, {320, 58}), around);
  EXPECT_EQ(pixelAt(*view, {320, 62}), QColor(Qt::black));
  EXPECT_EQ(pixelAt(*view, {320, 418}), QColor(Qt::black));
  EXPECT_EQ(pixelAt(*view, {320, 422}), around);
}

TEST_F(PaintViewTest, ACanvasOnePointHighShowsOnlyTheWindowsColour) {
  PaintView small(model, machine.timers);
  small.resize(100, 1);

  const QImage picture = small.grab().toImage();

  for (int x = 0; x < picture.width(); ++x) {
    ASSERT_EQ(picture.pixelColor(x, 0), small.palette().color(QPalette::Window)) << x;
  }
}

TEST_F(PaintViewTest, ATransparentBackgroundShowsTheWindowsColour) {
  model.setBackground(CanvasBackground::transparent);

  EXPECT_EQ(pixelAt(*view, {320, 240}), view->palette().color(QPalette::Window));
}

TEST_F(PaintViewTest, ASmallerPictureLeavesNothingOfTheLargerOne) {
  window.resize(320, 400);
  settle();

  EXPECT_EQ(pixelAt(*view, {160, 100}), view->palette().color(QPalette::Window));
  EXPECT_EQ(pixelAt(*view, {160, 200}), QColor(Qt::black));
}

TEST_F(PaintViewTest, EverySizeOfTheRulesIsInPoints) {
  model.setGlow(false);
  model.setManualWidth(50);
  QTest::mouseClick(view, Qt::LeftButton, {}, {320, 240});

  // A dot of 50 * 360 / 800 = 22.5 points.
  const QColor cyan = pixelAt(*view, {320, 240});
  EXPECT_NEAR(cyan.hslHue(), 187, 3);
  EXPECT_EQ(pixelAt(*view, {320, 240 + 9}), cyan);
  EXPECT_EQ(pixelAt(*view, {320, 240 + 13}), QColor(Qt::black));
}

TEST_F(PaintViewTest, APictureIsAsFineAsTheScreen) {
  model.mouseDown(0.2, 0.2);
  model.mouseDragged(0.3, 0.35);
  model.mouseUp();
  const double scale = view->devicePixelRatio();
  const QSize size = QSize(640, 360) * scale;
  QImage expected(size, QImage::Format_RGB32);
  const pixels::SurfaceView pixels{expected.bits(), size.width(), size.height(),
                                   static_cast<std::size_t>(expected.bytesPerLine())};
  render::CanvasRenderer::render(model.makeScene(CanvasBackground::black, true), {pixels, scale},
                                 {640, 360});

  const QImage shown = view->grab().toImage().convertToFormat(QImage::Format_RGB32);

  const QPoint corner(0, static_cast<int>(60 * scale));
  EXPECT_EQ(shown.copy(QRect(corner, size)), expected);
}

TEST_F(PaintViewTest, APressADragAndAReleaseDrawAStroke) {
  QTest::mousePress(view, Qt::LeftButton, {}, {320, 240});
  EXPECT_TRUE(model.store().isDrawing());
  QTest::mouseMove(view, {352, 240});
  QTest::mouseRelease(view, Qt::LeftButton, {}, {352, 240});

  EXPECT_FALSE(model.store().isDrawing());
  ASSERT_THAT(model.store().strokes(), SizeIs(1));
  EXPECT_EQ(model.store().strokes()[0].points.size(), 2U);
  EXPECT_DOUBLE_EQ(firstPoint().x, 0.5);
  EXPECT_DOUBLE_EQ(firstPoint().y, 0.5);
}

TEST_F(PaintViewTest, APressBesideTheCanvasIsPinnedToItsEdge) {
  QTest::mouseClick(view, Qt::LeftButton, {}, {160, 10});

  EXPECT_DOUBLE_EQ(firstPoint().x, 0.25);
  EXPECT_DOUBLE_EQ(firstPoint().y, 0);
}

TEST_F(PaintViewTest, ADragOutsideTheViewGoesOnAlongTheEdge) {
  QTest::mousePress(view, Qt::LeftButton, {}, {600, 240});
  QTest::mouseMove(view, {700, 240});
  EXPECT_DOUBLE_EQ(cursor()->x, 1);
  QTest::mouseRelease(view, Qt::LeftButton, {}, {900, 900});

  EXPECT_FALSE(model.store().isDrawing());
}

TEST_F(PaintViewTest, AReleaseWithoutAPressLeavesTheModelAlone) {
  const support::ObserverLog log(model);

  QTest::mouseRelease(view, Qt::LeftButton, {}, {320, 240});

  EXPECT_THAT(log.announcements, IsEmpty());
}

TEST_F(PaintViewTest, TheSecondPressOfADoubleClickDrawsToo) {
  QTest::mouseClick(view, Qt::LeftButton, {}, {320, 240});
  QTest::mouseDClick(view, Qt::LeftButton, {}, {320, 240});

  EXPECT_EQ(model.strokeCount(), 2);
}

TEST_F(PaintViewTest, OtherButtonsNeitherDrawNorEndAStroke) {
  QTest::mouseClick(view, Qt::RightButton, {}, {320, 240});
  EXPECT_EQ(model.strokeCount(), 0);

  QTest::mousePress(view, Qt::LeftButton, {}, {320, 240});
  QTest::mouseClick(view, Qt::RightButton, {}, {320, 240});

  EXPECT_TRUE(model.store().isDrawing());
}

TEST_F(PaintViewTest, ADialogThatOpensEndsTheStrokeWhoseReleaseItSwallows) {
  QTest::mousePress(view, Qt::LeftButton, {}, {320, 240});
  QDialog dialog(&window);
  dialog.open();
  settle();

  EXPECT_FALSE(model.store().isDrawing());
}

TEST_F(PaintViewTest, AWindowOfAnotherProgramThatTakesTheKeyboardDoesNotCutTheLine) {
  QTest::mousePress(view, Qt::LeftButton, {}, {320, 240});

  QFocusEvent lost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
  QCoreApplication::sendEvent(view, &lost);
  QEvent deactivated(QEvent::WindowDeactivate);
  QCoreApplication::sendEvent(view, &deactivated);
  QTest::mouseMove(view, {400, 240});

  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_THAT(model.store().strokes(), SizeIs(1));
  EXPECT_THAT(model.store().strokes()[0].points, SizeIs(2));
}

TEST_F(PaintViewTest, APointerThatMovesWithoutAButtonEndsAStrokeWhoseReleaseWasLost) {
  model.mouseDown(0.5, 0.5);

  QMouseEvent move(QEvent::MouseMove, {400, 240}, view->mapToGlobal(QPointF(400, 240)),
                   Qt::NoButton, Qt::NoButton, {});
  QCoreApplication::sendEvent(view, &move);

  EXPECT_FALSE(model.store().isDrawing());
}

TEST_F(PaintViewTest, AMenuThatOpensEndsTheStroke) {
  QTest::mousePress(view, Qt::LeftButton, {}, {320, 240});

  QFocusEvent lost(QEvent::FocusOut, Qt::PopupFocusReason);
  QCoreApplication::sendEvent(view, &lost);

  EXPECT_FALSE(model.store().isDrawing());
}

TEST_F(PaintViewTest, HidingTheViewEndsTheStroke) {
  QTest::mousePress(view, Qt::LeftButton, {}, {320, 240});

  window.hide();

  EXPECT_FALSE(model.store().isDrawing());
}

TEST_F(PaintViewTest, ATabletPenIsLeftToBecomeAMouse) {
  QTabletEvent touch(QEvent::TabletPress, QPointingDevice::primaryPointingDevice(), {320, 240},
                     {320, 240}, 1, 0, 0, 0, 0, 0, {}, Qt::LeftButton, Qt::LeftButton);

  QCoreApplication::sendEvent(view, &touch);

  EXPECT_FALSE(touch.isAccepted());
  EXPECT_TRUE(QCoreApplication::testAttribute(Qt::AA_SynthesizeMouseForUnhandledTabletEvents));
}

}  // namespace
}  // namespace ui
