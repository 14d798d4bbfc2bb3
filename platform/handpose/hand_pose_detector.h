#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/hand_pose_request.h"
#include "platform/handpose/hand_tracks.h"
#include "platform/handpose/hand_vision.h"

namespace platform::handpose {

/// Finds and follows the hands before one camera.
class HandPoseDetector final : public HandPoseRequest {
 public:
  using LoadVision = std::function<Result<std::unique_ptr<HandVision>>()>;

  /// Sees with the networks inside the program.
  HandPoseDetector();
  /// `load` is called with the first frame, so that the program's start does not wait for it, and
  /// again with the next frame where it fails.
  explicit HandPoseDetector(LoadVision load);

  /// Fails where the networks cannot be loaded or used, and for a frame without a picture.
  Result<std::vector<HandObservation>> perform(const pixels::PixelBuffer& frame) override;

 private:
  LoadVision load_;
  std::unique_ptr<HandVision> vision_;
  std::optional<HandTracks> tracks_;
};

}  // namespace platform::handpose
