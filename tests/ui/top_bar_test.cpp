#include "ui/top_bar.h"

#include <gmock/gmock.h>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using support::button;
using support::pixelAt;
using support::press;
using testing::ElementsAre;

class TopBarTest : public testing::Test {
 protected:
  TopBarTest() {
    bar.resize(900, bar.sizeHint().height());
    bar.show();
    support::settle();
  }

  void draw() {
    model.mouseDown(0.5, 0.5);
    model.mouseUp();
    bar.refresh();
  }

  Swatch& swatch(int index) const { return *bar.findChildren<Swatch*>().at(index); }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  TopBar bar{model};
};

TEST_F(TopBarTest, ThePaletteShowsItsColoursByNameInOrder) {
  std::vector<std::string> names;
  for (const Swatch* each : bar.findChildren<Swatch*>()) {
    names.push_back(each->toolTip().toStdString());
  }

  EXPECT_THAT(names,
              ElementsAre("Cyan", "Magenta", "Lime", "Orange", "Yellow", "Red", "Violet", "White"));
}

TEST_F(TopBarTest, PressingASwatchChoosesItsColour) {
  QTest::mouseClick(&swatch(4), Qt::LeftButton);

  EXPECT_EQ(model.colorIndex(), 4);
}

TEST_F(TopBarTest, TheSpaceBarChoosesTheFocusedColour) {
  QTest::keyClick(&swatch(6), Qt::Key_Space);

  EXPECT_EQ(model.colorIndex(), 6);
}

TEST_F(TopBarTest, TheChosenSwatchSaysSo) {
  model.setColorIndex(2);
  bar.refresh();

  EXPECT_EQ(swatch(1).accessibleName(), "Magenta");
  EXPECT_EQ(swatch(2).accessibleName(), "Lime, chosen");
  EXPECT_EQ(swatch(2).toolTip(), "Lime");
}

TEST_F(TopBarTest, PressingTheChosenSwatchKeepsItChosen) {
  QTest::mouseClick(&swatch(0), Qt::LeftButton);

  EXPECT_EQ(model.colorIndex(), 0);
  EXPECT_TRUE(swatch(0).isChecked());
}

TEST_F(TopBarTest, SwatchesAreCirclesOf24PointsWith6Between) {
  EXPECT_EQ(swatch(1).x() - swatch(0).x(), 24 + 6);
  EXPECT_EQ(swatch(0).x() + Swatch::kRingRoom, 10);

  const QPoint middle(15, 15);
  const QColor magenta = pixelAt(swatch(1), middle);
  EXPECT_NEAR(magenta.hslHue(), 314, 3);
  EXPECT_EQ(pixelAt(swatch(1), middle - QPoint(11, 0)), magenta);
  EXPECT_NE(pixelAt(swatch(1), middle - QPoint(14, 0)), magenta);
}

TEST_F(TopBarTest, OnlyTheChosenSwatchWearsARingInTheTextColour) {
  const int text = bar.palette().color(QPalette::WindowText).lightness();
  const auto lightnessAtTheRing = [](Swatch& each) { return pixelAt(each, {15, 2}).lightness(); };

  EXPECT_NEAR(lightnessAtTheRing(swatch(0)), text, 60);
  EXPECT_GT(lightnessAtTheRing(swatch(1)) - text, 100);
}

TEST_F(TopBarTest, WithoutStrokesThereIsNothingToUndoOrClear) {
  EXPECT_FALSE(button(bar, "Undo")->isEnabled());
  EXPECT_FALSE(button(bar, "Clear")->isEnabled());
  EXPECT_TRUE(button(bar, "Save Image")->isEnabled());

  draw();

  EXPECT_TRUE(button(bar, "Undo")->isEnabled());
  EXPECT_TRUE(button(bar, "Clear")->isEnabled());
}

TEST_F(TopBarTest, UndoTakesTheNewestStrokeAway) {
  draw();
  draw();

  press(bar, "Undo");

  EXPECT_EQ(model.strokeCount(), 1);
}

TEST_F(TopBarTest, ClearOnlyAsks) {
  draw();

  press(bar, "Clear");

  EXPECT_TRUE(model.showClearConfirm());
  EXPECT_EQ(model.strokeCount(), 1);
}

TEST_F(TopBarTest, SaveImageAsksWhichKind) {
  press(bar, "Save Image");

  EXPECT_TRUE(model.showSaveChoice());
}

TEST_F(TopBarTest, EveryToolShowsASymbol) {
  for (const char* tool : {"Undo", "Clear", "Save Image", "Record Video"}) {
    EXPECT_FALSE(button(bar, tool)->icon().isNull()) << tool;
  }
}

}  // namespace
}  // namespace ui
