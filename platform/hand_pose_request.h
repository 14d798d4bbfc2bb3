#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "pixels/pixel_buffer.h"
#include "platform/result.h"

namespace platform {

/// Which hand it is, as the person themselves would say; unknown when the detector cannot tell.
enum class Chirality { left = -1, unknown = 0, right = 1 };

/// The joints that painting needs.
enum class HandJoint { wrist, thumbTip, indexTip, middleMCP, middleTip, ringTip, littleTip };

inline constexpr std::array kAllHandJoints{
    HandJoint::wrist,     HandJoint::thumbTip, HandJoint::indexTip, HandJoint::middleMCP,
    HandJoint::middleTip, HandJoint::ringTip,  HandJoint::littleTip};

/// One joint where the detector saw it. Positions a little outside 0 to 1 are possible: a joint
/// that the edge of the picture cuts off.
struct RecognizedPoint {
  double x = 0;          ///< 0 at the left edge of the frame as delivered, 1 at its right edge.
  double y = 0;          ///< 0 at the bottom edge, 1 at the top edge.
  float confidence = 0;  ///< From 0 to 1.

  friend bool operator==(const RecognizedPoint&, const RecognizedPoint&) = default;
};

/// One hand in one frame.
struct HandObservation {
  Chirality chirality = Chirality::unknown;
  /// By HandJoint; absent where the detector could not say anything.
  std::array<std::optional<RecognizedPoint>, kAllHandJoints.size()> points;

  std::optional<RecognizedPoint>& operator[](HandJoint joint) {
    return points[static_cast<std::size_t>(joint)];
  }
  const std::optional<RecognizedPoint>& operator[](HandJoint joint) const {
    return points[static_cast<std::size_t>(joint)];
  }

  friend bool operator==(const HandObservation&, const HandObservation&) = default;
};

/// Finds hands in camera frames. A detector may remember earlier frames to follow a hand, so one
/// request serves one camera. Calls never overlap, but may come from any one thread at a time.
class HandPoseRequest {
 public:
  static constexpr std::size_t maximumHandCount = 2;

  virtual ~HandPoseRequest() = default;
  /// At most maximumHandCount hands, the best first; none is a success too. A failure describes
  /// itself and leaves the request usable for the next frame.
  virtual Result<std::vector<HandObservation>> perform(const pixels::PixelBuffer& frame) = 0;
};

}  // namespace platform
