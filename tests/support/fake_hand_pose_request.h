#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/hand_pose_request.h"

namespace support {

/// A detector that sees what it is told: one scripted answer a frame, in order, and no hands once
/// they are used up.
class FakeHandPoseRequest final : public platform::HandPoseRequest {
 public:
  void nextSees(std::vector<platform::HandObservation> hands) { script_.push_back({hands, {}}); }
  void nextFails(std::string description) { script_.push_back({{}, std::move(description)}); }

  /// How many frames it was asked about.
  int performCount() const { return performCount_; }

  platform::Result<std::vector<platform::HandObservation>> perform(
      const pixels::PixelBuffer&) override {
    ++performCount_;
    if (script_.empty()) return std::vector<platform::HandObservation>{};
    Answer answer = std::move(script_.front());
    script_.pop_front();
    if (!answer.failure.empty()) return platform::Error{std::move(answer.failure)};
    return std::move(answer.hands);
  }

 private:
  struct Answer {
    std::vector<platform::HandObservation> hands;
    std::string failure;
  };
  std::deque<Answer> script_;
  int performCount_ = 0;
};

}  // namespace support
