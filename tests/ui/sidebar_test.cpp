#include "ui/sidebar.h"

#include <gmock/gmock.h>

#include <QWheelEvent>
#include <algorithm>
#include <stdexcept>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using hand::ColorHand;
using render::CanvasBackground;
using support::button;
using support::label;
using support::press;
using testing::ElementsAre;

class SidebarTest : public testing::Test {
 protected:
  SidebarTest() {
    sidebar.resize(Sidebar::kWidth, 900);
    sidebar.show();
    support::settle();
  }

  Slider& slider(const QString& name) {
    for (auto* candidate : sidebar.findChildren<Slider*>()) {
      if (candidate->accessibleName() == name) return *candidate;
    }
    throw std::runtime_error("no slider " + name.toStdString());
  }

  void choose(const QString& text) {
    press(sidebar, text);
    sidebar.refresh();
  }

  QComboBox& handPicker() { return *sidebar.findChild<QComboBox*>(); }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  Sidebar sidebar{model};
};

TEST_F(SidebarTest, EverythingStandsInItsOrder) {
  std::vector<std::pair<int, std::string>> texts;
  const auto note = [&](const QWidget& widget, const QString& text) {
    texts.emplace_back(widget.mapTo(&sidebar, QPoint(0, 0)).y(), text.toStdString());
  };
  for (const auto* item : sidebar.findChildren<QLabel*>()) note(*item, item->text());
  for (const auto* item : sidebar.findChildren<QCheckBox*>()) note(*item, item->text());
  for (const auto* item : sidebar.findChildren<SegmentedPicker*>()) {
    note(*item, item->accessibleName());
  }
  std::sort(texts.begin(), texts.end());
  std::vector<std::string> order;
  for (const auto& text : texts) order.push_back(text.second);

  EXPECT_THAT(order, ElementsAre("Canvas", "Background", "Dim camera picture", "Pen", "Neon glow",
                                 "Width follows hand distance", "Width: 14",
                                 "The slider is also used by the mouse.", "Fade out",
                                 "Strokes fade away", "After 6 seconds", "Colour gesture", "Hand",
                                 "Hold that hand open with fingers spread for half a second to "
                                 "switch to the next colour."));
}

TEST_F(SidebarTest, Is250PointsWide) {
  EXPECT_EQ(sidebar.minimumWidth(), 250);
  EXPECT_EQ(sidebar.maximumWidth(), 250);
}

TEST_F(SidebarTest, TheBackgroundIsCameraBlackOrWhite) {
  EXPECT_TRUE(button(sidebar, "Camera")->isChecked());

  choose("White");

  EXPECT_EQ(model.background(), CanvasBackground::white);
  EXPECT_TRUE(button(sidebar, "White")->isChecked());
  EXPECT_FALSE(button(sidebar, "Camera")->isChecked());
  EXPECT_EQ(sidebar.findChild<SegmentedPicker*>()->findChildren<QAbstractButton*>().size(), 3);
}

TEST_F(SidebarTest, ABackgroundThatIsNoneOfThoseLeavesNoneChosen) {
  model.setBackground(CanvasBackground::transparent);
  sidebar.refresh();

  for (const char* title : {"Camera", "Black", "White"}) {
    EXPECT_FALSE(button(sidebar, title)->isChecked()) << title;
  }
}

TEST_F(SidebarTest, TheArrowKeysChooseTheNextBackground) {
  button(sidebar, "Camera")->setFocus();

  QTest::keyClick(button(sidebar, "Camera"), Qt::Key_Right);

  EXPECT_EQ(model.background(), CanvasBackground::black);
}

TEST_F(SidebarTest, OnlyTheCameraPictureCanBeDimmed) {
  EXPECT_TRUE(slider("Dim camera picture").isEnabled());

  choose("Black");
  EXPECT_FALSE(slider("Dim camera picture").isEnabled());
  EXPECT_FALSE(label(sidebar, "Dim camera picture")->isEnabled());
  EXPECT_DOUBLE_EQ(model.dim(), 0.35);

  choose("Camera");
  EXPECT_TRUE(slider("Dim camera picture").isEnabled());
}

TEST_F(SidebarTest, DimmingStopsAtNineTenths) {
  Slider& dim = slider("Dim camera picture");

  QTest::keyClick(&dim, Qt::Key_End);
  EXPECT_DOUBLE_EQ(model.dim(), 0.9);
  QTest::keyClick(&dim, Qt::Key_Right);
  EXPECT_DOUBLE_EQ(model.dim(), 0.9);
  QTest::keyClick(&dim, Qt::Key_Home);
  EXPECT_DOUBLE_EQ(model.dim(), 0);
}

TEST_F(SidebarTest, TheSwitchesFollowTheModelAndChangeIt) {
  choose("Neon glow");
  EXPECT_FALSE(model.glow());
  choose("Strokes fade away");
  EXPECT_TRUE(model.fadeEnabled());

  model.setGlow(true);
  sidebar.refresh();

  EXPECT_TRUE(button(sidebar, "Neon glow")->isChecked());
}

TEST_F(SidebarTest, WhileTheHandSetsTheWidthTheSliderIsGreyAndKeepsItsValue) {
  EXPECT_FALSE(slider("Width").isEnabled());
  EXPECT_FALSE(label(sidebar, "Width: ")->isEnabled());
  EXPECT_DOUBLE_EQ(slider("Width").amount(), 14);

  choose("Width follows hand distance");

  EXPECT_FALSE(model.widthFromDistance());
  EXPECT_TRUE(slider("Width").isEnabled());
  EXPECT_DOUBLE_EQ(model.manualWidth(), 14);
}

TEST_F(SidebarTest, TheWidthIsShownWithoutItsFraction) {
  model.setManualWidth(2.9);
  sidebar.refresh();

  EXPECT_EQ(label(sidebar, "Width: ")->text(), "Width: 2");
  EXPECT_DOUBLE_EQ(model.manualWidth(), 2.9);
}

TEST_F(SidebarTest, TheWidthGoesFrom2To50) {
  choose("Width follows hand distance");
  Slider& width = slider("Width");

  QTest::keyClick(&width, Qt::Key_End);
  EXPECT_DOUBLE_EQ(model.manualWidth(), 50);
  QTest::keyClick(&width, Qt::Key_Home);
  EXPECT_DOUBLE_EQ(model.manualWidth(), 2);
}

TEST_F(SidebarTest, FadingIsSetInWholeSecondsFrom2To30) {
  EXPECT_FALSE(slider("Fade after seconds").isEnabled());
  choose("Strokes fade away");
  Slider& seconds = slider("Fade after seconds");
  EXPECT_TRUE(seconds.isEnabled());

  QTest::keyClick(&seconds, Qt::Key_Right);
  EXPECT_DOUBLE_EQ(model.fadeSeconds(), 7);
  QTest::keyClick(&seconds, Qt::Key_End);
  EXPECT_DOUBLE_EQ(model.fadeSeconds(), 30);
  QTest::keyClick(&seconds, Qt::Key_Home);
  EXPECT_DOUBLE_EQ(model.fadeSeconds(), 2);
  sidebar.refresh();
  EXPECT_EQ(label(sidebar, "After ")->text(), "After 2 seconds");
}

TEST_F(SidebarTest, TheColourHandIsLeftRightOrEither) {
  QComboBox& picker = handPicker();
  std::vector<std::string> titles;
  for (int i = 0; i < picker.count(); ++i) titles.push_back(picker.itemText(i).toStdString());
  EXPECT_THAT(titles, ElementsAre("Left hand", "Right hand", "Either hand"));
  EXPECT_EQ(picker.currentText(), "Left hand");

  QTest::keyClick(&picker, Qt::Key_Down);
  EXPECT_EQ(model.colorHand(), ColorHand::right);
  QTest::keyClick(&picker, Qt::Key_Down);
  EXPECT_EQ(model.colorHand(), ColorHand::either);
}

TEST_F(SidebarTest, ScrollingOverAControlDoesNotChangeIt) {
  const auto scroll = [](QWidget& widget) {
    QWheelEvent wheel(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {0, -60}, {0, -120}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &wheel);
  };

  scroll(handPicker());
  scroll(slider("Dim camera picture"));

  EXPECT_EQ(model.colorHand(), ColorHand::left);
  EXPECT_DOUBLE_EQ(model.dim(), 0.35);
}

TEST_F(SidebarTest, ShowingAValueDoesNotChangeIt) {
  model.setDim(0.123456);
  model.setManualWidth(60);
  model.setFadeSeconds(6.5);

  sidebar.refresh();

  EXPECT_DOUBLE_EQ(model.dim(), 0.123456);
  EXPECT_DOUBLE_EQ(model.manualWidth(), 60);
  EXPECT_DOUBLE_EQ(model.fadeSeconds(), 6.5);
  EXPECT_EQ(label(sidebar, "After ")->text(), "After 6 seconds");
}

}  // namespace
}  // namespace ui
