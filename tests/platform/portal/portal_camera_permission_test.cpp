#include "platform/portal/portal_camera_permission.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "platform/std/thread_queue_factory.h"
#include "tests/support/access_backend.h"
#include "tests/support/child_process.h"
#include "tests/support/desktop_session.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/temporary_folder.h"

namespace platform::portal {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using support::AccessBackend;
using support::ChildProcess;

constexpr const char* kPortal = "/usr/libexec/xdg-desktop-portal";
constexpr const char* kStore = "/usr/libexec/xdg-permission-store";

/// Against the real portal and the real permission store, with a back-end of our own.
class PortalCameraPermissionTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* program : {kPortal, kStore}) {
      if (!std::filesystem::exists(program)) GTEST_SKIP() << program << " is not installed";
    }
    if (!ChildProcess::isInstalled("dbus-daemon")) GTEST_SKIP() << "dbus-daemon is not installed";
    setenv("XDG_CURRENT_DESKTOP", "test", 1);
    setenv("XDG_DESKTOP_PORTAL_DIR", portals.path().c_str(), 1);
    desktop.emplace(support::BusActivation::off);
    store.emplace(std::vector<std::string>{kStore});
    permission = std::make_unique<PortalCameraPermission>(queues, mainQueue);
  }

  void TearDown() override {
    permission.reset();
    portal.reset();
    store.reset();
    backend.reset();
    desktop.reset();
  }

  void startPortal() {
    std::ofstream(portals.path() / "test.portal")
        << "[portal]\nDBusName=" << AccessBackend::kName
        << "\nInterfaces=org.freedesktop.impl.portal.Access;org.freedesktop.impl.portal.Lockdown;\n"
           "UseIn=test\n";
    portal.emplace(std::vector<std::string>{kPortal});
  }

  void startPortalWithBackend() {
    if (!backend) backend = std::make_unique<AccessBackend>();
    startPortal();
    // The portal takes a moment to be there.
    for (int i = 0; i < 100 && read() == CameraAuthorization::authorized; ++i) {
      std::this_thread::sleep_for(milliseconds(50));
    }
  }

  template <class Value>
  Value await(const std::optional<Value>& answer) {
    for (int i = 0; i < 4000 && !answer; ++i) {
      mainQueue.drain();
      std::this_thread::sleep_for(milliseconds(5));
    }
    EXPECT_TRUE(answer) << "no answer";
    return answer.value_or(Value{});
  }

  CameraAuthorization read() {
    std::optional<CameraAuthorization> answer;
    permission->read([&](CameraAuthorization authorization) { answer = authorization; });
    return await(answer);
  }

  bool request() {
    std::optional<bool> answer;
    permission->request([&](bool granted) { answer = granted; });
    return await(answer);
  }

  support::TemporaryFolder portals;
  std::optional<support::DesktopSession> desktop;
  std::optional<ChildProcess> store;
  std::optional<ChildProcess> portal;
  std::unique_ptr<AccessBackend> backend;
  ThreadQueueFactory queues;
  support::FakeMainQueue mainQueue;
  std::unique_ptr<PortalCameraPermission> permission;
};

TEST_F(PortalCameraPermissionTest, NobodyHasBeenAskedAtFirst) {
  startPortalWithBackend();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  EXPECT_EQ(backend->dialogs, 0);
}

TEST_F(PortalCameraPermissionTest, AGrantIsKept) {
  startPortalWithBackend();
  backend->answer = AccessBackend::kGrant;

  EXPECT_TRUE(request());
  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
  EXPECT_EQ(backend->dialogs, 1);
}

TEST_F(PortalCameraPermissionTest, ARefusalIsKept) {
  startPortalWithBackend();
  backend->answer = AccessBackend::kRefuse;

  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::denied);
  EXPECT_FALSE(request());
  EXPECT_EQ(backend->dialogs, 1);
}

TEST_F(PortalCameraPermissionTest, ADialogThatWasClosedIsARefusal) {
  startPortalWithBackend();
  backend->answer = AccessBackend::kDismiss;

  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::denied);
}

TEST_F(PortalCameraPermissionTest, ALockedCameraIsRestricted) {
  backend = std::make_unique<AccessBackend>();
  backend->cameraLocked = true;
  startPortalWithBackend();

  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::restricted);
  EXPECT_EQ(backend->dialogs, 0);
}

TEST_F(PortalCameraPermissionTest, APortalThatHangsDelaysOnlyTheAnswer) {
  startPortalWithBackend();
  portal->freeze();
  const auto start = steady_clock::now();
  std::optional<CameraAuthorization> answer;

  permission->read([&](CameraAuthorization authorization) { answer = authorization; });
  EXPECT_LT(steady_clock::now() - start, milliseconds(500));

  EXPECT_EQ(await(answer), CameraAuthorization::notDetermined);
  EXPECT_FALSE(request());
}

TEST_F(PortalCameraPermissionTest, WithoutAPortalTheDeviceDecides) {
  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
}

TEST_F(PortalCameraPermissionTest, APortalThatCannotAskLeavesItToTheDevice) {
  portal.emplace(std::vector<std::string>{kPortal});
  std::this_thread::sleep_for(milliseconds(1000));

  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
}

TEST_F(PortalCameraPermissionTest, CanEndWhileItWaits) {
  startPortalWithBackend();
  portal->freeze();
  permission->read([](CameraAuthorization) { ADD_FAILURE() << "answered after its end"; });
  permission->request([](bool) { ADD_FAILURE() << "answered after its end"; });
  std::this_thread::sleep_for(milliseconds(200));
  const auto start = steady_clock::now();

  permission.reset();

  EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
  mainQueue.drain();
}

TEST(PortalCameraPermission, WithoutASessionBusTheDeviceDecides) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  ThreadQueueFactory queues;
  support::FakeMainQueue mainQueue;
  PortalCameraPermission permission(queues, mainQueue);
  std::optional<CameraAuthorization> read;
  std::optional<bool> granted;
  permission.read([&](CameraAuthorization answer) { read = answer; });
  permission.request([&](bool answer) { granted = answer; });

  for (int i = 0; i < 2000 && !(read && granted); ++i) {
    mainQueue.drain();
    std::this_thread::sleep_for(milliseconds(5));
  }

  EXPECT_EQ(read, CameraAuthorization::authorized);
  EXPECT_EQ(granted, true);
}

}  // namespace
}  // namespace platform::portal
