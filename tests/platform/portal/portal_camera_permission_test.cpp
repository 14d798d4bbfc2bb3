#include "platform/portal/portal_camera_permission.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/platform/portal/portal_fixture.h"

namespace platform::portal {
namespace {

using support::AccessBackend;

TEST_F(PortalCameraPermissionTest, NobodyHasBeenAskedAtFirst) {
  session->startPortal();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  EXPECT_EQ(session->backend().dialogs, 0);
}

TEST_F(PortalCameraPermissionTest, AGrantIsKept) {
  session->startPortal();
  session->backend().answer = AccessBackend::kGrant;

  EXPECT_TRUE(request());
  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
  EXPECT_EQ(session->backend().dialogs, 1);
}

TEST_F(PortalCameraPermissionTest, ARefusalIsKept) {
  session->startPortal();
  session->backend().answer = AccessBackend::kRefuse;

  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::denied);
  EXPECT_FALSE(request());
  EXPECT_EQ(session->backend().dialogs, 1);
}

TEST_F(PortalCameraPermissionTest, ADialogThatWasClosedIsARefusal) {
  session->startPortal();
  session->backend().answer = AccessBackend::kDismiss;

  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::denied);
}

TEST_F(PortalCameraPermissionTest, AnAnswerThatAsksEveryTimeSettlesNothing) {
  session->store("", "ask");
  session->startPortal();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  EXPECT_TRUE(request());
  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  EXPECT_EQ(session->backend().dialogs, 1);
}

TEST_F(PortalCameraPermissionTest, TheAnswerForAnotherProgramIsNotOurs) {
  session->store("org.example.Other", "yes");
  session->startPortal();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
}

TEST_F(PortalCameraPermissionTest, AYesThatThePortalDoesNotCountAsOursSettlesNothing) {
  setting.cgroup = session->cgroup();
  std::ofstream(setting.cgroup) << "0::/user@1.service/app.slice/app-org.example.program-1.scope\n";
  session->store("org.example.program", "yes");
  session->startPortal();
  makePermission();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
}

TEST_F(PortalCameraPermissionTest, ALookAtAPermissionKeepsNoConnectionOfTheCameras) {
  if (const auto missing = support::DesktopSession::missing()) GTEST_SKIP() << *missing;
  session->store("", "yes");
  session->desktop().startPipeWire();
  session->startPortal();
  ASSERT_EQ(read(), CameraAuthorization::authorized);
  const auto openFiles = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = openFiles();

  EXPECT_EQ(read(), CameraAuthorization::authorized);

  EXPECT_EQ(openFiles(), before);
}

/// The portal takes us for a program in a launcher's unit, whose name is the parameter.
class LaunchedTest : public PortalCameraPermissionTest,
                     public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    if (const auto reason = support::PortalSession::cannotBeDeceived()) GTEST_SKIP() << *reason;
    PortalCameraPermissionTest::SetUp();
    if (IsSkipped()) return;
    session->deceivePortal(GetParam());
    session->startPortal();
    setting.cgroup = session->cgroup();
    makePermission();
  }
};

TEST_P(LaunchedTest, TheAnswerIsKeptUnderTheNameThatThePortalGivesUs) {
  session->store("org.example.Other", "yes");
  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  session->backend().answer = AccessBackend::kRefuse;

  EXPECT_FALSE(request());

  EXPECT_EQ(read(), CameraAuthorization::denied);
}

INSTANTIATE_TEST_SUITE_P(Launchers, LaunchedTest,
                         testing::Values("app-gnome-io.github.wavescribe.Wavescribe-1234.scope",
                                         "app-io.github.wavescribe.Wavescribe@0a1b.service",
                                         "app-io.github.wavescribe.Wavescribe-autostart.service",
                                         R"(app-gnome-org.example.some\x2dprogram-77.scope)",
                                         "app-gnome-program-77.scope",
                                         "app-org.example.program-1.slice", "vte-spawn-0a1b.scope"),
                         [](const auto& unit) { return "Unit" + std::to_string(unit.index); });

}  // namespace
}  // namespace platform::portal
