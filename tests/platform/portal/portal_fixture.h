#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "platform/portal/portal_camera_permission.h"
#include "platform/std/thread_queue_factory.h"
#include "tests/support/access_backend.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/portal_session.h"
#include "tests/support/temporary_folder.h"

namespace platform::portal {

/// The permission against the real portal and the real permission store.
class PortalCameraPermissionTest : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = support::PortalSession::missing()) GTEST_SKIP() << *missing;
    session.emplace();
    makePermission();
  }

  void makePermission() {
    permission = std::make_unique<PortalCameraPermission>(queues, mainQueue, setting);
  }

  template <class Value>
  Value await(const std::optional<Value>& answer) {
    for (int i = 0; i < 4000 && !answer; ++i) {
      mainQueue.drain();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_TRUE(answer) << "no answer";
    return answer.value_or(Value{});
  }

  CameraAuthorization read() {
    std::optional<CameraAuthorization> answer;
    permission->read([&](CameraAuthorization authorization) { answer = authorization; });
    return await(answer);
  }

  /// None when a later question was answered and this one was not.
  std::optional<bool> requestOnce() {
    std::optional<bool> answer;
    permission->request([&](bool granted) { answer = granted; });
    read();
    return answer;
  }

  bool request() {
    std::optional<bool> answer;
    permission->request([&](bool granted) { answer = granted; });
    return await(answer);
  }

  const support::TemporaryFolder devices;  // Without any, whatever this machine has.
  PortalSetting setting{.devices = devices.path()};
  std::optional<support::PortalSession> session;
  ThreadQueueFactory queues;
  support::FakeMainQueue mainQueue;
  std::unique_ptr<PortalCameraPermission> permission;
};

}  // namespace platform::portal
