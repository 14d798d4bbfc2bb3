#include "platform/portal/portal_camera_permission.h"
#include "tests/platform/portal/portal_fixture.h"

namespace platform::portal {
namespace {

class CameraLockTest : public PortalCameraPermissionTest {
 protected:
  // The portal hears of a change a moment after it was made.
  bool comesToRead(CameraAuthorization authorization) {
    for (int i = 0; i < 200; ++i) {
      if (read() == authorization) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
};

TEST_F(CameraLockTest, ALockedCameraIsRestrictedFromTheFirstLookOn) {
  session->backend().lockCamera(true);
  session->startPortal();

  EXPECT_EQ(read(), CameraAuthorization::restricted);
  EXPECT_FALSE(request());
  EXPECT_EQ(read(), CameraAuthorization::restricted);
  EXPECT_EQ(session->backend().dialogs, 0);
}

TEST_F(CameraLockTest, ALockBarsWhatWasGrantedUntilItIsLifted) {
  session->startPortal();
  ASSERT_TRUE(request());
  ASSERT_EQ(read(), CameraAuthorization::authorized);

  session->backend().lockCamera(true);
  EXPECT_TRUE(comesToRead(CameraAuthorization::restricted));
  EXPECT_FALSE(request());

  session->backend().lockCamera(false);
  EXPECT_TRUE(comesToRead(CameraAuthorization::authorized));
}

TEST_F(CameraLockTest, AfterALockThePersonCanBeAsked) {
  session->backend().lockCamera(true);
  session->startPortal();
  ASSERT_FALSE(request());

  session->backend().lockCamera(false);

  EXPECT_TRUE(comesToRead(CameraAuthorization::notDetermined));
  EXPECT_TRUE(request());
  EXPECT_EQ(read(), CameraAuthorization::authorized);
}

TEST_F(CameraLockTest, ALockHidesARefusal) {
  session->store("", "no");
  session->backend().lockCamera(true);
  session->startPortal();
  ASSERT_EQ(read(), CameraAuthorization::restricted);

  session->backend().lockCamera(false);

  EXPECT_TRUE(comesToRead(CameraAuthorization::denied));
}

}  // namespace
}  // namespace platform::portal
