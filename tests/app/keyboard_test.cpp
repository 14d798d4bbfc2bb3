#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QPushButton>
#include <QSlider>
#include <set>

#include "app/main_window.h"
#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace app {
namespace {

using support::settle;

/// The window in a state in which every control of it can be used.
class KeyboardTest : public testing::Test {
 protected:
  KeyboardTest() {
    model.mouseDown(0.5, 0.5);
    model.mouseUp();
    model.setWidthFromDistance(false);
    model.setFadeEnabled(true);
    machine.savePanel.willAnswer("/pictures/a.png");
    machine.files.failure = platform::Error{"disk full"};
    model.saveImage(false);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    settle();
  }

  std::vector<QWidget*> controls() const {
    std::vector<QWidget*> found;
    for (auto* widget : window.centralWidget()->findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QAbstractButton*>(widget) ||
                             qobject_cast<QSlider*>(widget) || qobject_cast<QComboBox*>(widget);
      if (isControl && widget->isVisible()) found.push_back(widget);
    }
    return found;
  }

  /// Everything that Tab comes to on one round.
  std::set<QWidget*> tabStops() {
    std::set<QWidget*> stops;
    for (int i = 0; i < 100; ++i) {
      QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &window,
                      Qt::Key_Tab);
      if (QApplication::focusWidget()) stops.insert(QApplication::focusWidget());
    }
    return stops;
  }

  /// Of buttons that exclude each other, Tab reaches one and the arrow keys the others.
  static bool isReachedThrough(const std::set<QWidget*>& stops, QWidget* control) {
    if (stops.contains(control)) return true;
    const auto* button = qobject_cast<QAbstractButton*>(control);
    if (!button || !button->group() || !button->group()->exclusive()) return false;
    return stops.contains(button->group()->checkedButton());
  }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  MainWindow window{model, machine.timers};
};

TEST_F(KeyboardTest, TabReachesEveryControl) {
  const auto stops = tabStops();

  EXPECT_GE(controls().size(), 8U + 4 + 2 + 3 + 3 + 3 + 1);
  for (QWidget* control : controls()) {
    EXPECT_TRUE(isReachedThrough(stops, control))
        << control->metaObject()->className() << " " << control->accessibleName().toStdString();
  }
}

TEST_F(KeyboardTest, EveryControlHasANameForScreenReaders) {
  for (QWidget* control : controls()) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(control);
    ASSERT_TRUE(interface) << control->metaObject()->className();
    EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty())
        << control->metaObject()->className();
  }
}

TEST_F(KeyboardTest, AClickOnAToolLeavesTheFocusAlone) {
  QWidget* before = QApplication::focusWidget();

  support::press(window, "Neon glow");
  support::press(window, "Undo");

  EXPECT_EQ(QApplication::focusWidget(), before);
}

}  // namespace
}  // namespace app
