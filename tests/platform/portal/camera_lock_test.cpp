#include "platform/portal/portal_camera_permission.h"
#include "tests/platform/portal/portal_fixture.h"

namespace platform::portal {
namespace {

using CameraLockTest = PortalCameraPermissionTest;

TEST_F(CameraLockTest, ALockedCameraIsRestricted) {
  session->backend().cameraLocked = true;
  session->startPortal();

  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::restricted);
  EXPECT_EQ(session->backend().dialogs, 0);
}

}  // namespace
}  // namespace platform::portal
