#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "model/app_model.h"
#include "tests/support/fake_platform.h"
#include "tests/support/observer_log.h"

namespace model {
namespace {

using Kind = CameraState::Kind;
using platform::CameraAuthorization;
using render::CanvasBackground;

constexpr const char* kSession = "wavescribe.camera.session";

class CameraPermissionFlowTest : public testing::Test {
 protected:
  void refresh(CameraAuthorization answer) {
    model.refreshPermission();
    machine.cameraPermission.answerRead(answer);
  }

  void request(bool granted) {
    model.requestCamera();
    machine.cameraPermission.answerRequest(granted);
  }

  /// Brings the model into a state by the calls that lead there.
  void enter(Kind kind) {
    switch (kind) {
      case Kind::checking:
        return;
      case Kind::needsPermission:
        return refresh(CameraAuthorization::notDetermined);
      case Kind::denied:
        return refresh(CameraAuthorization::denied);
      case Kind::restricted:
        return refresh(CameraAuthorization::restricted);
      case Kind::running:
        return refresh(CameraAuthorization::authorized);
      case Kind::mouseOnly:
        return model.useMouseOnly();
      case Kind::failed:
        return refresh(CameraAuthorization::unknown);
    }
  }

  Kind state() const { return model.cameraState().kind; }

  support::FakePlatform machine;
  AppModel model{machine.services()};
};

/// A state by the name under which a failing test shows it.
struct NamedState {
  const char* name;
  Kind kind;

  friend void PrintTo(const NamedState& named, std::ostream* out) { *out << named.name; }
};

std::string nameOf(const testing::TestParamInfo<NamedState>& info) {
  return info.param.name;
}

class FromEveryState : public CameraPermissionFlowTest,
                       public testing::WithParamInterface<NamedState> {
 protected:
  void SetUp() override { enter(GetParam().kind); }
};

INSTANTIATE_TEST_SUITE_P(CameraPermissionFlow, FromEveryState,
                         testing::Values(NamedState{"Checking", Kind::checking},
                                         NamedState{"NeedsPermission", Kind::needsPermission},
                                         NamedState{"Denied", Kind::denied},
                                         NamedState{"Restricted", Kind::restricted},
                                         NamedState{"Running", Kind::running},
                                         NamedState{"MouseOnly", Kind::mouseOnly},
                                         NamedState{"Failed", Kind::failed}),
                         nameOf);

TEST_P(FromEveryState, APermissionThatNobodyWasAskedForNeedsAsking) {
  refresh(CameraAuthorization::notDetermined);

  EXPECT_EQ(state(), Kind::needsPermission);
}

TEST_P(FromEveryState, APolicyRestrictsTheCamera) {
  refresh(CameraAuthorization::restricted);

  EXPECT_EQ(state(), Kind::restricted);
}

TEST_P(FromEveryState, ARefusalDeniesTheCamera) {
  refresh(CameraAuthorization::denied);

  EXPECT_EQ(state(), Kind::denied);
}

TEST_P(FromEveryState, APermissionStartsTheCamera) {
  refresh(CameraAuthorization::authorized);
  machine.serialQueues.drain(kSession);

  EXPECT_EQ(state(), Kind::running);
  EXPECT_TRUE(machine.capture.running);
}

TEST_P(FromEveryState, AnUnknownAnswerFailsWithoutABanner) {
  refresh(CameraAuthorization::unknown);

  EXPECT_EQ(model.cameraState(),
            CameraState::failed("The camera permission has an unknown state."));
  EXPECT_EQ(model.errorMessage(), std::nullopt);
  EXPECT_EQ(model.errorDetails(), std::nullopt);
}

TEST_P(FromEveryState, AGrantedRequestStartsTheCamera) {
  request(true);
  machine.serialQueues.drain(kSession);

  EXPECT_EQ(state(), Kind::running);
  EXPECT_TRUE(machine.capture.running);
}

TEST_P(FromEveryState, ARefusedRequestDeniesTheCamera) {
  request(false);

  EXPECT_EQ(state(), Kind::denied);
}

TEST_P(FromEveryState, TheMouseAloneCanBeChosen) {
  model.useMouseOnly();

  EXPECT_EQ(state(), Kind::mouseOnly);
}

TEST_P(FromEveryState, AskingAndLookingUpChangeNothingBeforeTheAnswer) {
  const CameraState before = model.cameraState();

  model.refreshPermission();
  model.requestCamera();

  EXPECT_EQ(model.cameraState(), before);
}

TEST_P(FromEveryState, OpeningTheSettingsChangesNothingInTheProgram) {
  const support::ObserverLog log(model);

  model.openCameraSettings();

  EXPECT_EQ(machine.settingsPage.cameraPrivacyOpened, 1);
  EXPECT_THAT(log.announcements, testing::IsEmpty());
}

TEST_P(FromEveryState, ComingBackReadsThePermissionOnlyAfterARefusalOrARestriction) {
  const int before = machine.cameraPermission.reads;

  machine.activation.becomeActive();

  const Kind kind = GetParam().kind;
  const bool barred = kind == Kind::denied || kind == Kind::restricted;
  EXPECT_EQ(machine.cameraPermission.reads - before, barred ? 1 : 0);
}

TEST_F(CameraPermissionFlowTest, AFreshModelAsksNobody) {
  EXPECT_EQ(state(), Kind::checking);
  EXPECT_EQ(machine.cameraPermission.reads, 0);
  EXPECT_EQ(machine.cameraPermission.requests, 0);
  EXPECT_EQ(machine.serialQueues.waiting(kSession), 0u);
}

TEST_F(CameraPermissionFlowTest, APermissionServiceThatNeverAnswersLeavesTheStateAsItIs) {
  model.refreshPermission();
  machine.mainQueue.drain();

  EXPECT_EQ(state(), Kind::checking);
}

TEST_F(CameraPermissionFlowTest, TheMouseInsteadOfTheCameraTurnsTheBackgroundBlack) {
  model.useMouseOnly();

  EXPECT_EQ(model.background(), CanvasBackground::black);
}

TEST_F(CameraPermissionFlowTest, TheMouseInsteadOfTheCameraKeepsAnyOtherBackground) {
  for (const auto background :
       {CanvasBackground::white, CanvasBackground::transparent, CanvasBackground::black}) {
    model.setBackground(background);

    model.useMouseOnly();

    EXPECT_EQ(model.background(), background);
  }
}

TEST_F(CameraPermissionFlowTest, GrantingInTheSettingsAndComingBackStartsTheCameraWithoutAClick) {
  model.requestCamera();
  machine.cameraPermission.answerRequest(false);
  ASSERT_EQ(state(), Kind::denied);

  machine.activation.becomeActive();
  machine.cameraPermission.answerRead(CameraAuthorization::authorized);
  machine.serialQueues.drain(kSession);

  EXPECT_EQ(state(), Kind::running);
  EXPECT_TRUE(machine.capture.running);
}

TEST_F(CameraPermissionFlowTest, ComingBackWithoutAChangeKeepsTheRefusal) {
  enter(Kind::denied);

  machine.activation.becomeActive();
  machine.cameraPermission.answerRead(CameraAuthorization::denied);

  EXPECT_EQ(state(), Kind::denied);
}

TEST_F(CameraPermissionFlowTest, APermissionWhileRunningLeavesTheFramesFlowing) {
  enter(Kind::running);
  machine.serialQueues.drain(kSession);

  refresh(CameraAuthorization::authorized);
  machine.serialQueues.drain(kSession);

  EXPECT_EQ(state(), Kind::running);
  EXPECT_EQ(machine.capture.starts, 1);
}

TEST_F(CameraPermissionFlowTest, AnAnswerThatComesAfterChoosingTheMouseNoLongerCounts) {
  model.refreshPermission();
  model.useMouseOnly();

  machine.cameraPermission.answerRead(CameraAuthorization::authorized);

  EXPECT_EQ(state(), Kind::mouseOnly);
}

TEST_F(CameraPermissionFlowTest, OnlyTheNewestLookUpCounts) {
  model.refreshPermission();
  model.refreshPermission();

  machine.cameraPermission.answerOldestRead(CameraAuthorization::denied);
  EXPECT_EQ(state(), Kind::checking);
  machine.cameraPermission.answerOldestRead(CameraAuthorization::authorized);
  EXPECT_EQ(state(), Kind::running);
}

TEST_F(CameraPermissionFlowTest, AnAnswerThePersonGaveBeatsAnOlderLookUp) {
  enter(Kind::denied);
  model.refreshPermission();
  request(true);

  machine.cameraPermission.answerRead(CameraAuthorization::denied);

  EXPECT_EQ(state(), Kind::running);
}

TEST(CameraPermissionFlow, AnswersToAModelThatHasGoneAreIgnored) {
  support::FakePlatform machine;
  auto model = std::make_unique<AppModel>(machine.services());
  model->refreshPermission();
  model->requestCamera();

  model.reset();

  machine.cameraPermission.answerRead(CameraAuthorization::authorized);
  machine.cameraPermission.answerRequest(true);
  machine.activation.becomeActive();
  EXPECT_FALSE(machine.capture.running);
}

TEST(CameraState, AFailureEqualsOnlyAFailureOfTheSameText) {
  EXPECT_EQ(CameraState::failed("a"), CameraState::failed("a"));
  EXPECT_NE(CameraState::failed("a"), CameraState::failed("b"));
  for (const Kind kind : {Kind::checking, Kind::needsPermission, Kind::denied, Kind::restricted,
                          Kind::running, Kind::mouseOnly}) {
    EXPECT_NE(CameraState::failed("a"), (CameraState{kind, {}}));
  }
}

}  // namespace
}  // namespace model
