#include "platform/portal/portal_camera_permission.h"
#include "tests/platform/portal/portal_fixture.h"

namespace platform::portal {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using support::AccessBackend;

class MissingPortalTest : public PortalCameraPermissionTest {
 protected:
  void beImpatient() {
    setting.patience = milliseconds(500);
    makePermission();
  }

  /// For somebody impatient on a machine that is slow.
  std::optional<bool> requestUntilAnswered() {
    std::optional<bool> answer;
    for (int i = 0; i < 20 && !answer; ++i) answer = requestOnce();
    return answer;
  }

  void askWithoutGettingAnAnswer() {
    permission->read([](CameraAuthorization) { ADD_FAILURE() << "answered after its end"; });
    permission->request([](bool) { ADD_FAILURE() << "answered after its end"; });
  }

  void expectToEndAtOnce() {
    const auto start = steady_clock::now();
    permission.reset();
    EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
    mainQueue.drain();
  }

  bool waitForDialog() {
    for (int i = 0; i < 1000 && session->backend().dialogs == 0; ++i) {
      std::this_thread::sleep_for(milliseconds(5));
    }
    return session->backend().dialogs == 1;
  }
};

TEST_F(MissingPortalTest, APortalThatHangsDelaysOnlyTheAnswer) {
  session->startPortal();
  session->portal().freeze();
  beImpatient();
  const auto start = steady_clock::now();
  std::optional<CameraAuthorization> answer;

  permission->read([&](CameraAuthorization authorization) { answer = authorization; });
  EXPECT_LT(steady_clock::now() - start, milliseconds(500));

  EXPECT_EQ(await(answer), CameraAuthorization::notDetermined);
}

TEST_F(MissingPortalTest, APortalThatHangsCanBeAskedAgain) {
  session->startPortal();
  session->portal().freeze();
  beImpatient();
  EXPECT_EQ(requestOnce(), std::nullopt);

  session->portal().thaw();

  EXPECT_EQ(requestUntilAnswered(), true);
}

TEST_F(MissingPortalTest, APortalThatEndsWhileItAsksCanBeAskedAgain) {
  session->startPortal();
  session->backend().answer = AccessBackend::kNone;
  bool isAnswered = false;
  permission->request([&](bool) { isAnswered = true; });
  ASSERT_TRUE(waitForDialog());

  session->portal().kill();
  read();
  EXPECT_FALSE(isAnswered);

  session->startPortal();
  session->backend().answer = AccessBackend::kGrant;
  EXPECT_TRUE(request());
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

TEST_F(MissingPortalTest, APortalThatWeMayNotTalkToGrantsNothing) {
  session.emplace("<deny send_destination='org.freedesktop.portal.Desktop'/>");
  session->startPortal();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  EXPECT_FALSE(request());
}

TEST_F(MissingPortalTest, AStoredAnswerCountsWithoutAPortal) {
  session->store("", "no");
  EXPECT_EQ(read(), CameraAuthorization::denied);

  session->store("", "yes");
  EXPECT_EQ(read(), CameraAuthorization::authorized);
}

TEST_F(MissingPortalTest, CanEndWhileItWaits) {
  session->startPortal();
  session->portal().freeze();
  askWithoutGettingAnAnswer();
  std::this_thread::sleep_for(milliseconds(200));

  expectToEndAtOnce();
}

TEST_F(MissingPortalTest, CanEndWhileThePersonIsAsked) {
  session->startPortal();
  session->backend().answer = AccessBackend::kNone;
  permission->request([](bool) { ADD_FAILURE() << "answered after its end"; });
  ASSERT_TRUE(waitForDialog());

  expectToEndAtOnce();
}

using MissingBusTest = MissingPortalTest;

TEST_F(MissingBusTest, LeavesItToTheDevice) {
  session->killBus();

  EXPECT_EQ(read(), CameraAuthorization::authorized);
  EXPECT_TRUE(request());
}

TEST_F(MissingBusTest, TheNextBusIsUsedAfterTheEndOfOne) {
  session->startPortal();
  ASSERT_EQ(read(), CameraAuthorization::notDetermined);

  session->killBus();
  EXPECT_EQ(read(), CameraAuthorization::authorized);

  session->startBus();
  session->startPortal();
  EXPECT_EQ(read(), CameraAuthorization::notDetermined);
  EXPECT_TRUE(request());
}

TEST_F(MissingBusTest, ABusThatHangsDelaysOnlyTheAnswer) {
  session->startPortal();
  session->desktop().freezeBus();
  beImpatient();

  EXPECT_EQ(requestOnce(), std::nullopt);
  EXPECT_EQ(read(), CameraAuthorization::notDetermined);

  session->desktop().thawBus();
  EXPECT_EQ(requestUntilAnswered(), true);
}

TEST_F(MissingBusTest, ABusThatBeginsToHangDelaysOnlyTheAnswer) {
  session->startPortal();
  beImpatient();
  ASSERT_EQ(read(), CameraAuthorization::notDetermined);
  session->desktop().freezeBus();

  EXPECT_EQ(read(), CameraAuthorization::notDetermined);

  session->desktop().thawBus();
}

TEST_F(MissingBusTest, CanEndWhileTheBusHangs) {
  session->desktop().freezeBus();
  askWithoutGettingAnAnswer();
  std::this_thread::sleep_for(milliseconds(200));

  expectToEndAtOnce();

  session->desktop().thawBus();
}

}  // namespace
}  // namespace platform::portal
