#include "ui/status_bar.h"

#include <gtest/gtest.h>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using model::CameraState;
using Kind = model::CameraState::Kind;

TEST(StatusText, UntilTheCameraRunsItIsOff) {
  for (const Kind kind : {Kind::checking, Kind::needsPermission, Kind::denied, Kind::restricted}) {
    EXPECT_EQ(statusText({kind, {}}, "Drawing"), "Camera off");
  }
}

TEST(StatusText, ARunningCameraTellsOfTheHand) {
  EXPECT_EQ(statusText({Kind::running, {}}, "Pen up"), "Hand: Pen up");
}

TEST(StatusText, WithoutACameraThereIsTheMouse) {
  EXPECT_EQ(statusText({Kind::mouseOnly, {}}, "No hand"), "Mouse only");
}

TEST(StatusText, ACameraFailureShowsItsMessageInPlaceOfCameraOff) {
  EXPECT_EQ(statusText(CameraState::failed("No camera was found."), "No hand"),
            "No camera was found.");
}

TEST(StatusBar, ShowsTheStatusAndHowToPaint) {
  support::FakePlatform machine;
  model::AppModel model(machine.services());
  StatusBar bar(model);
  EXPECT_TRUE(support::label(bar, "Camera off"));

  model.useMouseOnly();
  bar.refresh();

  EXPECT_TRUE(support::label(bar, "Mouse only"));
  EXPECT_TRUE(support::label(
      bar, "Pinch thumb and finger to draw. Open your hand to stop. Mouse works too."));
}

}  // namespace
}  // namespace ui
