#include "platform/portal/camera_policy.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "platform/portal/handle.h"
#include "platform/portal/portal_camera_permission.h"
#include "platform/std/thread_queue_factory.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/scoped_ordinary_user.h"
#include "tests/support/temporary_folder.h"

namespace platform::portal {
namespace {

using std::filesystem::perms;

class DeviceDecidesTest : public testing::Test {
 protected:
  // The superuser's folder is open to the ordinary one.
  DeviceDecidesTest() { std::filesystem::permissions(folder.path(), perms(0755)); }

  void addDevice(const char* name, perms permissions) {
    const std::ofstream file(folder / name);
    std::filesystem::permissions(folder / name, permissions);
  }

  CameraAuthorization decision() {
    const support::ScopedOrdinaryUser user;
    return deviceDecides(folder.path());
  }

  support::TemporaryFolder folder;
};

TEST_F(DeviceDecidesTest, WithoutAVideoDeviceNobodyIsBarred) {
  addDevice("snd", perms::none);

  EXPECT_EQ(decision(), CameraAuthorization::authorized);
  EXPECT_EQ(deviceDecides(folder / "missing"), CameraAuthorization::authorized);
}

TEST_F(DeviceDecidesTest, ADeviceThatRefusesUsDenies) {
  addDevice("video0", perms::none);
  addDevice("video1", perms::others_read);

  EXPECT_EQ(decision(), CameraAuthorization::denied);
}

TEST_F(DeviceDecidesTest, OneDeviceThatLetsUsInIsEnough) {
  addDevice("video0", perms::none);
  addDevice("video1", perms(0666));

  EXPECT_EQ(decision(), CameraAuthorization::authorized);
}

/// The privacy settings of a desktop that has them, kept in memory.
class PrivacySettingTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("GSETTINGS_SCHEMA_DIR", WAVESCRIBE_TEST_SCHEMAS, 1);
    setenv("GSETTINGS_BACKEND", "memory", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  }

  static void disableCamera(bool disabled) {
    const Handle<GSettings> settings(g_settings_new("org.gnome.desktop.privacy"));
    g_settings_set_boolean(settings.get(), "disable-camera", disabled);
  }
};

TEST_F(PrivacySettingTest, TurnsTheCameraOffAndOnAgain) {
  EXPECT_FALSE(isCameraDisabledByDesktop());

  disableCamera(true);
  EXPECT_TRUE(isCameraDisabledByDesktop());

  disableCamera(false);
  EXPECT_FALSE(isCameraDisabledByDesktop());
}

TEST_F(PrivacySettingTest, RestrictsTheCameraWhateverElseHolds) {
  disableCamera(true);
  ThreadQueueFactory queues;
  support::FakeMainQueue mainQueue;
  PortalCameraPermission permission(queues, mainQueue);
  std::optional<CameraAuthorization> read;
  std::optional<bool> granted;

  permission.read([&](CameraAuthorization answer) { read = answer; });
  permission.request([&](bool answer) { granted = answer; });
  for (int i = 0; i < 1000 && !granted; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    mainQueue.drain();
  }

  EXPECT_EQ(read, CameraAuthorization::restricted);
  EXPECT_EQ(granted, false);
  disableCamera(false);
}

}  // namespace
}  // namespace platform::portal
