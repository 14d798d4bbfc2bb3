#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/observer_log.h"
#include "tests/support/painting_by_hand.h"

namespace model {
namespace {

using platform::CameraAuthorization;
using render::CursorState;
using testing::DoubleNear;
using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

using HandPenPipeline = support::PaintingByHand;

TEST_F(HandPenPipeline, APinchDrawsAndAnOpenHandStops) {
  seePen(0.3, 0.4, true);
  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "Drawing");
  EXPECT_EQ(model.strokeCount(), 1);

  machine.clock.advance(0.1);
  seePen(0.35, 0.4, true);
  machine.clock.advance(0.1);
  seePen(0.35, 0.4, false);

  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "Pen up");
  ASSERT_THAT(strokes(), SizeIs(1));
  EXPECT_THAT(strokes()[0].points, SizeIs(2));
  EXPECT_NEAR(strokes()[0].points[0].x, 0.3, 1e-9);
  EXPECT_NEAR(strokes()[0].points[0].y, 0.4, 1e-9);
}

TEST_F(HandPenPipeline, AStrokeHasTheColourItBeganWith) {
  model.setColorIndex(3);
  seePen(0.3, 0.4, true);
  model.setColorIndex(5);
  machine.clock.advance(0.1);
  seePen(0.35, 0.4, true);
  EXPECT_EQ(strokes()[0].colorIndex, 3);
  EXPECT_EQ(cursor()->colorIndex, 5);
}

TEST_F(HandPenPipeline, TheLineIsThinAfarAndWideUpClose) {
  const std::pair<double, double> widths[] = {
      {0.02, 3}, {0.07, 3}, {0.185, 21.5}, {0.30, 40}, {0.45, 40}};
  for (const auto& [size, width] : widths) {
    see({});
    seePen(0.5, 0.5, true, size);
    EXPECT_NEAR(strokes().back().points[0].w, width, 1e-9) << size;
    EXPECT_NEAR(cursor()->width, width, 1e-9) << size;
  }
}

TEST_F(HandPenPipeline, TheLineIsAsWideAsChosenWhenItDoesNotFollowTheDistance) {
  model.setWidthFromDistance(false);
  model.setManualWidth(9);
  for (const double size : {0.05, 0.2, 0.5}) {
    see({});
    seePen(0.5, 0.5, true, size);
    EXPECT_EQ(strokes().back().points[0].w, 9);
  }
}

TEST_F(HandPenPipeline, APenOutsideThePictureDrawsAtItsEdge) {
  seePen(-0.2, 1.3, true);
  EXPECT_EQ(strokes()[0].points[0].x, 0);
  EXPECT_EQ(strokes()[0].points[0].y, 1);
  EXPECT_EQ(cursor()->x, 0);
  EXPECT_EQ(cursor()->y, 1);
}

TEST_F(HandPenPipeline, TheCursorShowsWhetherThePenTouches) {
  seePen(0.3, 0.4, false);
  EXPECT_FALSE(cursor()->down);
  EXPECT_THAT(strokes(), IsEmpty());
  machine.clock.advance(0.1);
  seePen(0.3, 0.4, true);
  EXPECT_TRUE(cursor()->down);
}

TEST_F(HandPenPipeline, AHandThatIsGoneEndsItsStroke) {
  seePen(0.3, 0.4, true);
  see({});
  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "No hand");
  EXPECT_EQ(cursor(), std::nullopt);
  EXPECT_EQ(model.strokeCount(), 1);
}

TEST_F(HandPenPipeline, AReturningHandStartsANewStroke) {
  seePen(0.3, 0.4, true);
  see({});
  seePen(0.31, 0.4, true);
  EXPECT_THAT(strokes(), SizeIs(2));
  EXPECT_EQ(model.strokeCount(), 2);
}

TEST_F(HandPenPipeline, ResultsThatChangeNothingWakeNobody) {
  seePen(0.3, 0.4, true);
  const support::ObserverLog log(model);
  seePen(0.3, 0.4, true);
  EXPECT_THAT(log.announcements, IsEmpty());
}

// The gesture that changes the colour.

TEST_F(HandPenPipeline, ASpreadHandMustBeHeldForHalfASecond) {
  see({colorHand()});
  machine.clock.advance(0.49);
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 0);
  machine.clock.advance(0.01);
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 1);
}

TEST_F(HandPenPipeline, ASpreadHandChangesTheColourOnceHoweverLongItIsHeld) {
  for (int i = 0; i < 100; ++i) {
    see({colorHand()});
    machine.clock.advance(0.1);
  }
  EXPECT_EQ(model.colorIndex(), 1);
}

TEST_F(HandPenPipeline, AHandThatClosesAndSpreadsAnewChangesTheColourAgain) {
  for (int i = 0; i < 3; ++i) {
    see({colorHand()});
    machine.clock.advance(0.6);
    see({colorHand()});
    see({penAt(0.5, 0.5, false)});
  }
  EXPECT_EQ(model.colorIndex(), 3);
}

TEST_F(HandPenPipeline, AnInterruptedSpreadStartsFromTheBeginning) {
  see({colorHand()});
  machine.clock.advance(0.4);
  see({});
  see({colorHand()});
  machine.clock.advance(0.4);
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 0);
}

TEST_F(HandPenPipeline, AfterTheLastColourComesTheFirst) {
  model.setColorIndex(7);
  see({colorHand()});
  machine.clock.advance(0.5);
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 0);
}

TEST_F(HandPenPipeline, TheOtherHandWritesOnWhileTheColourChanges) {
  see({colorHand(), penAt(0.5, 0.5, true)});
  machine.clock.advance(0.5);
  see({colorHand(), penAt(0.52, 0.5, true)});
  EXPECT_EQ(model.colorIndex(), 1);
  ASSERT_THAT(strokes(), SizeIs(1));
  EXPECT_EQ(strokes()[0].colorIndex, 0);
}

TEST_F(HandPenPipeline, ANewColourHandCountsFromTheNextFrame) {
  const auto rightHand = support::spreadHand({.chirality = platform::Chirality::right});
  machine.handPoseRequest.nextSees({rightHand});
  machine.capture.deliver(support::frameOf(8, 8, machine.clock.now()));
  machine.serialQueues.drain("wavescribe.camera.frames");

  model.setColorHand(hand::ColorHand::either);  // Before the waiting frame is analysed.
  machine.serialQueues.drain("wavescribe.vision");
  machine.mainQueue.drain();

  machine.clock.advance(0.5);
  see({rightHand});
  EXPECT_EQ(model.colorIndex(), 1);
}

// The mouse always wins.

TEST_F(HandPenPipeline, WhileTheMouseDrawsAHandMovesNothing) {
  model.mouseDown(0.5, 0.5);
  const std::vector<strokes::Stroke> before = strokes();
  seePen(0.3, 0.4, true);
  machine.clock.advance(0.1);
  seePen(0.35, 0.4, true);
  see({});
  EXPECT_EQ(strokes(), before);
  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "No hand");
  model.mouseUp();
  EXPECT_EQ(cursor(), std::nullopt);
}

TEST_F(HandPenPipeline, WhileTheMouseDrawsASpreadHandStillChangesTheColour) {
  model.mouseDown(0.5, 0.5);
  see({colorHand()});
  machine.clock.advance(0.5);
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 1);
}

TEST_F(HandPenPipeline, WhileTheMouseDrawsAProblemIsStillReported) {
  model.mouseDown(0.5, 0.5);
  failToSee("The network is gone.");
  EXPECT_EQ(model.errorMessage(), "Hand tracking had a problem.");
}

TEST_F(HandPenPipeline, WhileTheMouseDrawsResultsStillKeepTheHandAlive) {
  seePen(0.3, 0.4, false);
  model.mouseDown(0.5, 0.5);
  machine.clock.advance(1);
  seePen(0.3, 0.4, false);
  model.mouseUp();
  machine.clock.advance(0.3);
  model.tick();
  EXPECT_TRUE(cursor());
}

TEST_F(HandPenPipeline, APressEndsTheStrokeOfTheHandFirst) {
  seePen(0.3, 0.4, true);
  const support::ObserverLog log(model);

  model.mouseDown(0.6, 0.5);

  ASSERT_THAT(strokes(), SizeIs(2));
  EXPECT_EQ(strokes()[1].points[0].x, 0.6);
  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_THAT(log.announcements,
              testing::ElementsAre(support::Announcement{Property::strokeCount, "1"}));
}

TEST_F(HandPenPipeline, TheCursorOfTheMouseHidesThatOfTheHandWhileItIsPressed) {
  seePen(0.3, 0.4, false);
  EXPECT_NEAR(cursor()->x, 0.3, 1e-9);
  model.mouseDown(0.6, 0.5);
  EXPECT_EQ(cursor()->x, 0.6);
  EXPECT_EQ(model.makeScene(render::CanvasBackground::black, false).cursor, std::nullopt);
  model.mouseUp();
  EXPECT_NEAR(cursor()->x, 0.3, 1e-9);
  EXPECT_EQ(model.makeScene(render::CanvasBackground::black, false).cursor, std::nullopt);
}

// A hand that the analysis no longer speaks of.

TEST_F(HandPenPipeline, AHandTimesOutAfterMoreThanFourTenthsOfASecond) {
  machine.clock.set(1024);  // A number that leaves room for exact tenths.
  seePen(0.3, 0.4, true);
  machine.clock.set(1024 + 0.41);
  model.tick();
  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "No hand");
  EXPECT_EQ(cursor(), std::nullopt);
}

TEST_F(HandPenPipeline, AHandDoesNotTimeOutAtExactlyFourTenthsOfASecond) {
  machine.clock.set(0);
  seePen(0.3, 0.4, true);
  machine.clock.set(0.4);
  model.tick();
  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "Drawing");
}

TEST_F(HandPenPipeline, ATimeOutForgetsTheSpread) {
  see({colorHand()});
  machine.clock.advance(0.45);
  model.tick();
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 0);
}

TEST_F(HandPenPipeline, ATimeOutLetsTheNextSpreadChangeTheColour) {
  see({colorHand()});
  machine.clock.advance(0.5);
  see({colorHand()});
  machine.clock.advance(0.45);
  model.tick();
  see({colorHand()});
  machine.clock.advance(0.5);
  see({colorHand()});
  EXPECT_EQ(model.colorIndex(), 2);
}

TEST_F(HandPenPipeline, WithoutARunningCameraAHandDoesNotTimeOut) {
  seePen(0.3, 0.4, true);
  const auto expectNoTimeOut = [&] {
    machine.clock.advance(60);
    model.tick();
    EXPECT_TRUE(cursor());
    EXPECT_EQ(model.handStatus(), "Drawing");
  };
  for (const auto answer : {CameraAuthorization::notDetermined, CameraAuthorization::restricted,
                            CameraAuthorization::denied, CameraAuthorization::unknown}) {
    model.refreshPermission();
    machine.cameraPermission.answerRead(answer);
    ASSERT_NE(model.cameraState().kind, CameraState::Kind::running);
    expectNoTimeOut();
  }
  model.useMouseOnly();
  expectNoTimeOut();
}

TEST_F(HandPenPipeline, WhileTheMouseDrawsAHandDoesNotTimeOut) {
  seePen(0.3, 0.4, false);
  model.mouseDown(0.5, 0.5);
  machine.clock.advance(60);
  model.tick();
  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "Pen up");
}

TEST_F(HandPenPipeline, TicksKeepARestingPenFromFading) {
  model.setFadeEnabled(true);
  model.setFadeSeconds(1);
  seePen(0.3, 0.4, true);
  for (int i = 0; i < 100; ++i) {
    machine.clock.advance(0.1);
    seePen(0.3, 0.4, true);
    model.tick();
  }
  EXPECT_THAT(strokes(), SizeIs(1));
  EXPECT_EQ(model.strokeCount(), 1);
}

// Problems of the detection.

TEST_F(HandPenPipeline, TheFirstProblemIsReportedWithItsReason) {
  failToSee("The network is gone.");
  EXPECT_EQ(model.errorMessage(), "Hand tracking had a problem.");
  EXPECT_EQ(model.errorDetails(), "The network is gone.");
}

TEST_F(HandPenPipeline, ASecondProblemIsNotReported) {
  failToSee("The network is gone.");
  failToSee("So is the memory.");
  EXPECT_EQ(model.errorDetails(), "The network is gone.");
  model.dismissError();
  failToSee("And the light.");
  EXPECT_EQ(model.errorMessage(), std::nullopt);
  EXPECT_EQ(model.errorDetails(), std::nullopt);
}

TEST_F(HandPenPipeline, AProblemEndsTheStrokeAndTheNextFrameGoesOn) {
  seePen(0.3, 0.4, true);
  failToSee("The network is gone.");
  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.handStatus(), "No hand");
  seePen(0.3, 0.4, true);
  EXPECT_EQ(model.handStatus(), "Drawing");
}

}  // namespace
}  // namespace model
