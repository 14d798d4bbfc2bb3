#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <algorithm>
#include <chrono>
#include <optional>

#include "app/main_window.h"
#include "platform/portal/portal_camera_permission.h"
#include "platform/qt/main_queue.h"
#include "platform/std/thread_queue_factory.h"
#include "tests/support/fake_platform.h"
#include "tests/support/portal_session.h"
#include "tests/support/widgets.h"

namespace app {
namespace {

using Kind = model::CameraState::Kind;

/// Everything but the permission and the way to its answers is a fake.
class HangingPortalTest : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = support::PortalSession::missing()) GTEST_SKIP() << *missing;
    session.emplace();
    session->startPortal();
    session->portal().freeze();
  }

  void open(std::chrono::milliseconds patience) {
    permission.emplace(queues, mainQueue, platform::portal::PortalSetting{.patience = patience});
    model.emplace(machine.services(*permission));
    window.emplace(*model, machine.timers);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&*window));
  }

  bool waitForAnswer() {
    return QTest::qWaitFor([&] { return model->cameraState().kind != Kind::checking; }, 10'000);
  }

  bool saysThatTheCameraIsOff() {
    support::settle();
    return support::label(*window, "Camera off")->isVisible();
  }

  std::optional<support::PortalSession> session;
  platform::ThreadQueueFactory queues;
  platform::qt::MainQueue mainQueue;
  std::optional<platform::portal::PortalCameraPermission> permission;
  support::FakePlatform machine;
  std::optional<model::AppModel> model;
  std::optional<MainWindow> window;
};

TEST_F(HangingPortalTest, TheWindowSaysThatTheCameraIsOffAndCanBePaintedOnMeanwhile) {
  constexpr std::chrono::seconds kPatience(3);
  open(kPatience);
  QWidget* canvas = window->childAt(400, 300);
  ASSERT_EQ(canvas->accessibleName().toStdString(), "Canvas");
  ASSERT_EQ(model->cameraState().kind, Kind::checking);
  QElapsedTimer sinceTheLastTurn;
  qint64 longestTurn = 0;
  sinceTheLastTurn.start();

  QTest::mousePress(canvas, Qt::LeftButton, {}, canvas->rect().center());
  QTest::mouseRelease(canvas, Qt::LeftButton, {}, canvas->rect().center());
  EXPECT_TRUE(saysThatTheCameraIsOff());
  EXPECT_EQ(model->store().strokes().size(), 1U);
  ASSERT_EQ(model->cameraState().kind, Kind::checking);
  while (model->cameraState().kind == Kind::checking) {
    QTest::qWait(5);
    longestTurn = std::max(longestTurn, sinceTheLastTurn.restart());
  }

  EXPECT_LT(std::chrono::milliseconds(longestTurn), kPatience / 2);
  EXPECT_TRUE(saysThatTheCameraIsOff());
}

TEST_F(HangingPortalTest, ThePersonCanAskAgainOnceThePortalGoesOn) {
  open(std::chrono::seconds(1));
  ASSERT_TRUE(waitForAnswer());
  ASSERT_EQ(model->cameraState().kind, Kind::needsPermission);
  support::press(*window, "Allow Camera");
  bool isLater = false;
  permission->read([&](auto) { isLater = true; });
  ASSERT_TRUE(QTest::qWaitFor([&] { return isLater; }, 10'000));
  ASSERT_EQ(model->cameraState().kind, Kind::needsPermission);

  session->portal().thaw();
  support::press(*window, "Allow Camera");

  EXPECT_TRUE(QTest::qWaitFor([&] { return model->cameraState().kind == Kind::running; }, 10'000));
}

TEST_F(HangingPortalTest, ThePersonCanGoOnWithTheMouse) {
  open(std::chrono::milliseconds(500));
  ASSERT_TRUE(waitForAnswer());

  support::press(*window, "Use Mouse Only");

  EXPECT_EQ(model->cameraState().kind, Kind::mouseOnly);
  EXPECT_TRUE(support::label(*window, "Mouse only")->isVisible());
}

}  // namespace
}  // namespace app
