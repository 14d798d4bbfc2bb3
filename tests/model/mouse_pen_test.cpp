#include <gmock/gmock.h>

#include <cstddef>
#include <optional>

#include "model/app_model.h"
#include "tests/support/fake_platform.h"
#include "tests/support/observer_log.h"

namespace model {
namespace {

using render::CanvasBackground;
using support::Announcement;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MousePen : public testing::Test {
 protected:
  MousePen() { model.useMouseOnly(); }

  void draw(double x, double y) {
    model.mouseDown(x, y);
    model.mouseUp();
  }

  std::optional<render::CursorState> cursor() const {
    return model.makeScene(CanvasBackground::black, true).cursor;
  }

  support::FakePlatform machine;
  AppModel model{machine.services()};
};

TEST_F(MousePen, APressBeginsAStrokeOfTheChosenColourAndWidth) {
  model.setColorIndex(3);
  model.setManualWidth(22);
  machine.clock.set(50);

  model.mouseDown(0.25, 0.75);

  ASSERT_THAT(model.store().strokes(), SizeIs(1));
  const strokes::Stroke& stroke = model.store().strokes()[0];
  EXPECT_EQ(stroke.points, (strokes::StrokePoints{{0.25, 0.75, 22}}));
  EXPECT_EQ(stroke.colorIndex, 3);
  EXPECT_EQ(stroke.lastTime, 50);
  EXPECT_TRUE(model.store().isDrawing());
}

TEST_F(MousePen, AClickWithoutADragLeavesADot) {
  const support::ObserverLog log(model);

  draw(0.5, 0.5);

  ASSERT_THAT(model.store().strokes(), SizeIs(1));
  EXPECT_EQ(model.store().strokes()[0].points, (strokes::StrokePoints{{0.5, 0.5, 14}}));
  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::strokeCount, "0"}));
}

TEST_F(MousePen, ADragContinuesTheStrokeAndChangesNoPublishedValue) {
  model.mouseDown(0.1, 0.5);
  const support::ObserverLog log(model);

  machine.clock.advance(1);
  model.mouseDragged(0.2, 0.5);

  EXPECT_EQ(model.store().strokes()[0].points,
            (strokes::StrokePoints{{0.1, 0.5, 14}, {0.2, 0.5, 14}}));
  EXPECT_EQ(model.store().strokes()[0].lastTime, machine.clock.now());
  EXPECT_THAT(log.announcements, IsEmpty());
}

TEST_F(MousePen, PositionsOutsideTheCanvasAreTakenAsTheyCome) {
  model.mouseDown(-0.1, 1.2);

  EXPECT_EQ(model.store().strokes()[0].points, (strokes::StrokePoints{{-0.1, 1.2, 14}}));
}

TEST_F(MousePen, TheWidthFollowsTheSettingDuringADrag) {
  model.mouseDown(0.1, 0.5);
  model.setManualWidth(40);

  model.mouseDragged(0.2, 0.5);

  EXPECT_EQ(model.store().strokes()[0].points.back().w, 40);
}

TEST_F(MousePen, ReleasingEndsTheStroke) {
  model.mouseDown(0.1, 0.5);
  machine.clock.advance(2);

  model.mouseUp();

  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.store().strokes()[0].lastTime, machine.clock.now());
}

TEST_F(MousePen, ADragOrAReleaseWithoutAPressChangesNothing) {
  const support::ObserverLog log(model);

  model.mouseDragged(0.2, 0.5);
  model.mouseUp();

  EXPECT_THAT(model.store().strokes(), IsEmpty());
  EXPECT_EQ(cursor(), std::nullopt);
  EXPECT_THAT(log.announcements, IsEmpty());
}

TEST_F(MousePen, ADragAfterTheReleaseChangesNothing) {
  draw(0.1, 0.5);

  model.mouseDragged(0.2, 0.5);

  EXPECT_EQ(model.store().strokes()[0].points.size(), 1u);
  EXPECT_EQ(cursor(), std::nullopt);
}

TEST_F(MousePen, APressEndsAStrokeThatIsStillOpenAndPublishesTheCountOnce) {
  model.mouseDown(0.1, 0.5);
  machine.clock.advance(3);
  const support::ObserverLog log(model);

  model.mouseDown(0.8, 0.5);

  ASSERT_THAT(model.store().strokes(), SizeIs(2));
  EXPECT_EQ(model.store().strokes()[0].lastTime, machine.clock.now());
  EXPECT_EQ(model.strokeCount(), 2);
  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::strokeCount, "1"}));
}

TEST_F(MousePen, StrokesSplitByAJumpAreCountedAtTheRelease) {
  model.mouseDown(0.1, 0.5);
  model.mouseDragged(0.9, 0.5);

  model.mouseUp();

  EXPECT_THAT(model.store().strokes(), SizeIs(2));
  EXPECT_EQ(model.strokeCount(), 2);
}

TEST_F(MousePen, TheCursorFollowsTheMouseWhileItsButtonIsDown) {
  model.setColorIndex(4);
  EXPECT_EQ(cursor(), std::nullopt);

  model.mouseDown(0.1, 0.5);
  EXPECT_EQ(cursor(), (render::CursorState{0.1, 0.5, true, 14, 4}));

  model.setColorIndex(6);
  model.setManualWidth(20);
  model.mouseDragged(0.2, 0.6);
  EXPECT_EQ(cursor(), (render::CursorState{0.2, 0.6, true, 20, 6}));

  model.mouseUp();
  EXPECT_EQ(cursor(), std::nullopt);
}

TEST_F(MousePen, ASceneWithoutACursorHasNoneEvenWhileTheMouseIsDown) {
  model.mouseDown(0.1, 0.5);

  EXPECT_EQ(model.makeScene(CanvasBackground::black, false).cursor, std::nullopt);
}

TEST_F(MousePen, ASceneTakesTheSettingsOfTheMomentAndTheBackgroundItIsAskedFor) {
  model.setBackground(CanvasBackground::white);
  model.setDim(0.6);
  model.setGlow(false);
  model.setFadeEnabled(true);
  model.setFadeSeconds(9);
  draw(0.5, 0.5);
  machine.clock.set(123);

  const render::RenderScene scene = model.makeScene(CanvasBackground::transparent, true);

  EXPECT_EQ(scene.background, CanvasBackground::transparent);
  EXPECT_FALSE(scene.frame.has_value());
  EXPECT_EQ(scene.dim, 0.6);
  EXPECT_FALSE(scene.glow);
  EXPECT_TRUE(scene.fadeEnabled);
  EXPECT_EQ(scene.fadeSeconds, 9);
  EXPECT_EQ(scene.now, 123);
  EXPECT_EQ(scene.strokes, model.store().strokes());
}

TEST_F(MousePen, ASceneOfAThousandStrokesCopiesNoPoint) {
  for (int i = 0; i < 1000; ++i) {
    model.mouseDown(0, 0.5);
    for (int k = 1; k < 200; ++k) model.mouseDragged(k / 200.0, 0.5);
    model.mouseUp();
  }

  const render::RenderScene scene = model.makeScene(CanvasBackground::black, true);

  ASSERT_EQ(scene.strokes.size(), 1000u);
  for (std::size_t i = 0; i < scene.strokes.size(); ++i) {
    ASSERT_EQ(scene.strokes[i].points.size(), 200u);
    EXPECT_TRUE(scene.strokes[i].points.sharesPointsWith(model.store().strokes()[i].points));
  }
}

TEST_F(MousePen, ASceneNeverSeesWhatIsPaintedLater) {
  model.mouseDown(0.1, 0.5);
  const render::RenderScene scene = model.makeScene(CanvasBackground::black, true);

  model.mouseDragged(0.2, 0.5);
  model.mouseUp();
  model.clear();

  ASSERT_THAT(scene.strokes, SizeIs(1));
  EXPECT_EQ(scene.strokes[0].points.size(), 1u);
}

TEST_F(MousePen, WithoutFadingATickNeverRemovesAStroke) {
  draw(0.5, 0.5);
  machine.clock.advance(1e6);

  model.tick();

  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_THAT(model.store().strokes(), SizeIs(1));
}

TEST_F(MousePen, ATickRemovesFadedStrokesAndPublishesTheCount) {
  model.setFadeEnabled(true);
  model.setFadeSeconds(3);
  draw(0.5, 0.5);
  const support::ObserverLog log(model);

  machine.clock.advance(3.9);
  model.tick();
  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_THAT(log.announcements, IsEmpty());

  machine.clock.advance(0.2);
  model.tick();
  EXPECT_EQ(model.strokeCount(), 0);
  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::strokeCount, "1"}));
}

TEST_F(MousePen, ATickKeepsTheOpenStrokeFreshWhileTheMouseRests) {
  model.setFadeEnabled(true);
  model.setFadeSeconds(3);
  model.mouseDown(0.5, 0.5);

  machine.clock.advance(60);
  model.tick();
  model.mouseUp();
  machine.clock.advance(3);
  model.tick();

  EXPECT_EQ(model.strokeCount(), 1);
}

}  // namespace
}  // namespace model
