#include "model/app_model.h"

#include <gmock/gmock.h>

#include "tests/support/fake_platform.h"
#include "tests/support/observer_log.h"

namespace model {
namespace {

using support::Announcement;
using testing::ElementsAre;
using testing::IsEmpty;

class AppModelTest : public testing::Test {
 protected:
  void draw(int strokes) {
    for (int i = 0; i < strokes; ++i) {
      model.mouseDown(0.5, 0.5);
      model.mouseUp();
    }
  }

  /// Gives every property that has a setter another value than its default.
  void setEverything() {
    model.setColorIndex(5);
    model.setBackground(render::CanvasBackground::white);
    model.setDim(0.8);
    model.setGlow(false);
    model.setWidthFromDistance(false);
    model.setManualWidth(30);
    model.setFadeEnabled(true);
    model.setFadeSeconds(2.5);
    model.setColorHand(hand::ColorHand::either);
    model.setShowClearConfirm(true);
    model.setShowSaveChoice(true);
  }

  support::FakePlatform machine;
  AppModel model{machine.services()};
};

TEST_F(AppModelTest, AFreshModelHasTheDefaults) {
  EXPECT_EQ(model.cameraState(), CameraState{});
  EXPECT_EQ(model.cameraState().kind, CameraState::Kind::checking);
  EXPECT_EQ(model.colorIndex(), 0);
  EXPECT_EQ(model.background(), render::CanvasBackground::camera);
  EXPECT_EQ(model.dim(), 0.35);
  EXPECT_TRUE(model.glow());
  EXPECT_TRUE(model.widthFromDistance());
  EXPECT_EQ(model.manualWidth(), 14);
  EXPECT_FALSE(model.fadeEnabled());
  EXPECT_EQ(model.fadeSeconds(), 6);
  EXPECT_EQ(model.colorHand(), hand::ColorHand::left);
  EXPECT_EQ(model.handStatus(), "No hand");
  EXPECT_EQ(model.strokeCount(), 0);
  EXPECT_FALSE(model.showClearConfirm());
  EXPECT_FALSE(model.showSaveChoice());
  EXPECT_EQ(model.errorMessage(), std::nullopt);
  EXPECT_EQ(model.errorDetails(), std::nullopt);
  EXPECT_THAT(model.store().strokes(), IsEmpty());
  EXPECT_FALSE(model.store().isDrawing());
}

TEST_F(AppModelTest, SettersStoreTheirValue) {
  setEverything();

  EXPECT_EQ(model.colorIndex(), 5);
  EXPECT_EQ(model.background(), render::CanvasBackground::white);
  EXPECT_EQ(model.dim(), 0.8);
  EXPECT_FALSE(model.glow());
  EXPECT_FALSE(model.widthFromDistance());
  EXPECT_EQ(model.manualWidth(), 30);
  EXPECT_TRUE(model.fadeEnabled());
  EXPECT_EQ(model.fadeSeconds(), 2.5);
  EXPECT_EQ(model.colorHand(), hand::ColorHand::either);
  EXPECT_TRUE(model.showClearConfirm());
  EXPECT_TRUE(model.showSaveChoice());
}

TEST_F(AppModelTest, EverySetterAnnouncesBeforeItWrites) {
  const support::ObserverLog log(model);

  setEverything();

  EXPECT_THAT(
      log.announcements,
      ElementsAre(
          Announcement{Property::colorIndex, "0"}, Announcement{Property::background, "camera"},
          Announcement{Property::dim, "0.35"}, Announcement{Property::glow, "true"},
          Announcement{Property::widthFromDistance, "true"},
          Announcement{Property::manualWidth, "14"}, Announcement{Property::fadeEnabled, "false"},
          Announcement{Property::fadeSeconds, "6"}, Announcement{Property::colorHand, "left"},
          Announcement{Property::showClearConfirm, "false"},
          Announcement{Property::showSaveChoice, "false"}));
}

TEST_F(AppModelTest, AStrokeCountThatStaysTheSameWakesNobody) {
  draw(1);
  const support::ObserverLog log(model);

  model.undo();
  model.undo();
  model.clear();

  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::strokeCount, "1"}));
}

TEST_F(AppModelTest, UndoTakesTheNewestStrokeAndPublishesTheCount) {
  draw(3);

  model.undo();

  EXPECT_EQ(model.store().strokes().size(), 2u);
  EXPECT_EQ(model.strokeCount(), 2);
}

TEST_F(AppModelTest, UndoWhileTheMouseDrawsTakesItsStrokeAndIgnoresTheRestOfTheDrag) {
  draw(1);
  model.mouseDown(0.1, 0.1);

  model.undo();
  model.mouseDragged(0.2, 0.1);
  model.mouseUp();

  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_EQ(model.store().strokes().size(), 1u);
}

TEST_F(AppModelTest, ClearTakesEveryStrokeAndPublishesTheCount) {
  draw(2);
  model.mouseDown(0.1, 0.1);

  model.clear();

  EXPECT_THAT(model.store().strokes(), IsEmpty());
  EXPECT_FALSE(model.store().isDrawing());
  EXPECT_EQ(model.strokeCount(), 0);
}

TEST_F(AppModelTest, UsingTheMouseOnlyIsAStateOfTheCamera) {
  const support::ObserverLog log(model);

  model.useMouseOnly();

  EXPECT_EQ(model.cameraState().kind, CameraState::Kind::mouseOnly);
  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::cameraState, "checking"},
                                             Announcement{Property::background, "camera"}));
}

TEST_F(AppModelTest, TheCanvasIsSixteenToNineWithoutACamera) {
  EXPECT_EQ(model.canvasAspect(), 16.0 / 9.0);

  model.useMouseOnly();

  EXPECT_EQ(model.canvasAspect(), 16.0 / 9.0);
}

TEST(CameraState, StatesAreEqualWhenTheirKindIsAndFailuresWhenTheirTextIsToo) {
  using Kind = CameraState::Kind;

  EXPECT_EQ(CameraState({Kind::denied, {}}), CameraState({Kind::denied, {}}));
  EXPECT_NE(CameraState({Kind::denied, {}}), CameraState({Kind::restricted, {}}));
  EXPECT_EQ(CameraState::failed("gone"), CameraState::failed("gone"));
  EXPECT_NE(CameraState::failed("gone"), CameraState::failed("busy"));
}

}  // namespace
}  // namespace model
