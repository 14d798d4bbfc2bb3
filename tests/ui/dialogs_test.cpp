#include <gtest/gtest.h>

#include <optional>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"
#include "ui/clear_confirmation.h"
#include "ui/save_choice.h"

namespace ui {
namespace {

using support::label;
using support::press;

class DialogsTest : public testing::Test {
 protected:
  DialogsTest() {
    window.show();
    model.mouseDown(0.5, 0.5);
    model.mouseUp();
  }

  void ask() {
    model.setShowClearConfirm(true);
    confirmation.refresh();
  }

  void askKind() {
    model.setShowSaveChoice(true);
    choice.refresh();
  }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  QWidget window;
  ClearConfirmation confirmation{model, &window};
  SaveChoice choice{model, &window};
};

TEST_F(DialogsTest, TheConfirmationAsksInWords) {
  ask();

  EXPECT_TRUE(confirmation.isVisible());
  EXPECT_TRUE(confirmation.isModal());
  EXPECT_TRUE(label(confirmation, "Clear the painting?"));
  EXPECT_TRUE(label(confirmation, "This removes every stroke."));
}

TEST_F(DialogsTest, ClearRemovesEveryStrokeAndClosesTheDialog) {
  ask();

  press(confirmation, "Clear");

  EXPECT_EQ(model.strokeCount(), 0);
  EXPECT_FALSE(model.showClearConfirm());
  EXPECT_FALSE(confirmation.isVisible());
}

TEST_F(DialogsTest, CancelKeepsTheStrokesAndClosesTheDialog) {
  ask();

  press(confirmation, "Cancel");

  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_FALSE(model.showClearConfirm());
  EXPECT_FALSE(confirmation.isVisible());
}

TEST_F(DialogsTest, ReturnDoesNotClear) {
  ask();

  QTest::keyClick(confirmation.focusWidget(), Qt::Key_Return);

  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_FALSE(model.showClearConfirm());
}

TEST_F(DialogsTest, EscapeKeepsTheStrokes) {
  ask();

  QTest::keyClick(&confirmation, Qt::Key_Escape);

  EXPECT_EQ(model.strokeCount(), 1);
  EXPECT_FALSE(model.showClearConfirm());
}

TEST_F(DialogsTest, TheModelMayTakeTheQuestionBack) {
  ask();

  model.setShowClearConfirm(false);
  confirmation.refresh();

  EXPECT_FALSE(confirmation.isVisible());
  EXPECT_EQ(model.strokeCount(), 1);
}

TEST_F(DialogsTest, AQuestionCanBeAskedAgain) {
  ask();
  press(confirmation, "Cancel");

  ask();

  EXPECT_TRUE(confirmation.isVisible());
}

TEST_F(DialogsTest, TheSaveChoiceOffersItsAnswersInOrder) {
  askKind();

  QStringList titles;
  for (const auto* button : choice.findChildren<QAbstractButton*>()) titles << button->text();

  EXPECT_EQ(titles, QStringList({"Painting only (transparent PNG)", "With the background picture",
                                 "Cancel"}));
  EXPECT_EQ(choice.windowTitle(), "Save image");
}

TEST_F(DialogsTest, TheDialogIsClosedBeforeTheSavePanelOpens) {
  std::optional<bool> wasVisible;
  machine.savePanel.whileOpen = [&] { wasVisible = choice.isVisible(); };
  askKind();

  press(choice, "With the background picture");

  EXPECT_EQ(wasVisible, false);
  EXPECT_FALSE(model.showSaveChoice());
}

TEST_F(DialogsTest, BothKindsSaveTheirOwnPicture) {
  model.setBackground(render::CanvasBackground::white);
  for (const char* kind : {"Painting only (transparent PNG)", "With the background picture"}) {
    machine.savePanel.willAnswer("/pictures/a.png");
    askKind();
    press(choice, kind);
    EXPECT_FALSE(model.showSaveChoice());
  }

  ASSERT_EQ(machine.pictureEncoder.pictures.size(), 2U);
  EXPECT_EQ(machine.pictureEncoder.pictures[0].row(0)[3], 0);
  EXPECT_EQ(machine.pictureEncoder.pictures[1].row(0)[3], 255);
}

TEST_F(DialogsTest, CancellingTheSaveChoiceSavesNothing) {
  askKind();

  press(choice, "Cancel");

  EXPECT_TRUE(machine.savePanel.requests.empty());
  EXPECT_FALSE(model.showSaveChoice());
}

}  // namespace
}  // namespace ui
