#include "app/main_window.h"

#include <gtest/gtest.h>

#include <QMenuBar>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace app {
namespace {

using support::settle;

class MainWindowTest : public testing::Test {
 protected:
  MainWindowTest() {
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }

  QMenu* menu(const QString& title) {
    for (QAction* action : window.menuBar()->actions()) {
      if (action->text().remove('&') == title) return action->menu();
    }
    ADD_FAILURE() << "no menu " << title.toStdString();
    return nullptr;
  }

  static QStringList titlesOf(const QWidget& menu) {
    QStringList titles;
    for (const QAction* action : menu.actions()) {
      titles << (action->isSeparator() ? "-" : action->text().remove('&'));
    }
    return titles;
  }

  QWidget* confirmation() { return support::label(window, "Clear the painting?")->window(); }

  void draw() {
    model.mouseDown(0.5, 0.5);
    model.mouseUp();
    settle();
  }

  void key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&window, key, modifiers);
    settle();
  }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  MainWindow window{model, machine.timers};
};

TEST_F(MainWindowTest, IsCalledWavescribe) {
  EXPECT_EQ(window.windowTitle(), "Wavescribe");
}

TEST_F(MainWindowTest, HasTheMenusOfADesktopProgramAndThePaintings) {
  EXPECT_EQ(titlesOf(*window.menuBar()), QStringList({"File", "Edit", "Painting", "Help"}));
  EXPECT_EQ(titlesOf(*menu("File")), QStringList({"Quit"}));
  EXPECT_EQ(titlesOf(*menu("Painting")),
            QStringList({"Save Image…", "Record Video…", "-", "Clear…"}));
  EXPECT_EQ(titlesOf(*menu("Help")), QStringList({"About Wavescribe"}));
}

TEST_F(MainWindowTest, TheEditMenuUndoesAStrokeAndKnowsNoRedo) {
  EXPECT_EQ(titlesOf(*menu("Edit")), QStringList({"Undo Stroke"}));
  EXPECT_EQ(menu("Edit")->actions()[0]->shortcut(), QKeySequence("Ctrl+Z"));
}

TEST_F(MainWindowTest, UndoTakesTheNewestStrokeAndThenNothing) {
  draw();
  draw();

  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(model.strokeCount(), 1);
  key(Qt::Key_Z, Qt::ControlModifier);
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(model.strokeCount(), 0);
}

TEST_F(MainWindowTest, CtrlSOpensTheSaveChoice) {
  key(Qt::Key_S, Qt::ControlModifier);

  EXPECT_TRUE(model.showSaveChoice());
}

TEST_F(MainWindowTest, BothClearShortcutsOnlyAsk) {
  draw();
  for (const Qt::Key last : {Qt::Key_Backspace, Qt::Key_Delete}) {
    key(last, Qt::ControlModifier | Qt::ShiftModifier);

    EXPECT_TRUE(model.showClearConfirm());
    EXPECT_EQ(model.strokeCount(), 1);
    support::press(*confirmation(), "Cancel");
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
}

TEST_F(MainWindowTest, WithoutStrokesTheMenuStillAsksBeforeClearing) {
  menu("Painting")->actions().back()->trigger();
  settle();

  EXPECT_TRUE(confirmation()->isVisible());
}

TEST_F(MainWindowTest, NoCommandIsEverDisabled) {
  for (const QAction* top : window.menuBar()->actions()) {
    for (const QAction* action : top->menu()->actions()) {
      EXPECT_TRUE(action->isEnabled()) << action->text().toStdString();
    }
  }
}

TEST_F(MainWindowTest, CannotBeMadeSmallerThan960By620) {
  window.resize(100, 100);
  settle();

  EXPECT_GE(window.centralWidget()->width(), 960);
  EXPECT_GE(window.centralWidget()->height(), 620);
}

TEST_F(MainWindowTest, AboutTellsTheNameAndTheLicence) {
  menu("Help")->actions()[0]->trigger();
  settle();

  QString text;
  for (const auto* label : window.findChildren<QLabel*>()) text += label->text() + '\n';
  EXPECT_TRUE(text.contains("Wavescribe 1."));
  EXPECT_TRUE(text.contains("GNU General Public License"));
}

}  // namespace
}  // namespace app
