#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/camera_permission.h"

namespace support {

/// A permission that answers when the test says so.
class FakeCameraPermission final : public platform::CameraPermission {
 public:
  int reads = 0;
  int requests = 0;

  void read(std::function<void(platform::CameraAuthorization)> answer) override {
    ++reads;
    reading_.push_back(std::move(answer));
  }
  void request(std::function<void(bool)> answer) override {
    ++requests;
    asking_.push_back(std::move(answer));
  }

  /// Answers every read that waits.
  void answerRead(platform::CameraAuthorization authorization) {
    for (auto& answer : std::exchange(reading_, {})) answer(authorization);
  }
  /// Answers the oldest read that waits, which there must be.
  void answerOldestRead(platform::CameraAuthorization authorization) {
    const auto answer = std::move(reading_.front());
    reading_.erase(reading_.begin());
    answer(authorization);
  }
  /// Answers every request that waits.
  void answerRequest(bool granted) {
    for (auto& answer : std::exchange(asking_, {})) answer(granted);
  }

 private:
  std::vector<std::function<void(platform::CameraAuthorization)>> reading_;
  std::vector<std::function<void(bool)>> asking_;
};

}  // namespace support
