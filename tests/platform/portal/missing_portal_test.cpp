#include "platform/portal/portal_camera_permission.h"
#include "tests/platform/portal/portal_fixture.h"

namespace platform::portal {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

using MissingPortalTest = PortalCameraPermissionTest;

TEST_F(MissingPortalTest, APortalThatHangsDelaysOnlyTheAnswer) {
  session->startPortal();
  session->portal().freeze();
  const auto start = steady_clock::now();
  std::optional<CameraAuthorization> answer;

  permission->read([&](CameraAuthorization authorization) { answer = authorization; });
  EXPECT_LT(steady_clock::now() - start, milliseconds(500));

  EXPECT_EQ(await(answer), CameraAuthorization::notDetermined);
  EXPECT_FALSE(request());
}

TEST_F(MissingPortalTest, WithoutAPortalTheDeviceDecides) {
  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
}

TEST_F(MissingPortalTest, APortalThatCannotAskLeavesItToTheDevice) {
  session->startPortalThatCannotAsk();

  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
}

TEST_F(MissingPortalTest, CanEndWhileItWaits) {
  session->startPortal();
  session->portal().freeze();
  permission->read([](CameraAuthorization) { ADD_FAILURE() << "answered after its end"; });
  permission->request([](bool) { ADD_FAILURE() << "answered after its end"; });
  std::this_thread::sleep_for(milliseconds(200));
  const auto start = steady_clock::now();

  permission.reset();

  EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
  mainQueue.drain();
}

TEST(MissingBus, LeavesItToTheDevice) {
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
