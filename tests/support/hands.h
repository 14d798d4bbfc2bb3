#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

#include "pixels/image.h"
#include "pixels/pixel_buffer.h"
#include "platform/hand_pose_request.h"

namespace support {

/// A hand to be shown to the detector's users. Lengths are in image heights, positions in the
/// detector's coordinates (from the bottom left).
struct Hand {
  platform::Chirality chirality = platform::Chirality::unknown;
  double x = 0.5;       ///< Middle between thumb tip and index tip.
  double y = 0.5;       ///< The same, from the bottom.
  double size = 0.2;    ///< From wrist to middle knuckle.
  double ratio = 0.2;   ///< Gap between thumb and index tip, as a share of the size.
  double aspect = 1.0;  ///< Of the frame it is shown in.
};

/// A hand seen from the front with its wrist at (0, 0) and size 1; thumb tip, index tip, ....
using FingerTips = std::array<platform::RecognizedPoint, 5>;

/// A hand with the given finger tips, in hand sizes from the wrist; the knuckle is straight above.
inline platform::HandObservation handWithTips(const Hand& hand, double wristX, double wristY,
                                              const FingerTips& tips) {
  using enum platform::HandJoint;
  const auto at = [&](double across, double up) {
    return platform::RecognizedPoint{wristX + across * hand.size / hand.aspect,
                                     wristY + up * hand.size, 0.9F};
  };
  platform::HandObservation seen;
  seen.chirality = hand.chirality;
  seen[wrist] = at(0, 0);
  seen[middleMCP] = at(0, 1);
  constexpr std::array kTips{thumbTip, indexTip, middleTip, ringTip, littleTip};
  for (std::size_t i = 0; i < kTips.size(); ++i) seen[kTips[i]] = at(tips[i].x, tips[i].y);
  return seen;
}

/// Thumb and index finger `hand.ratio` apart, the other fingers curled.
inline platform::HandObservation pinchingHand(const Hand& hand) {
  const double half = hand.ratio / 2;
  return handWithTips(hand, hand.x, hand.y - 1.2 * hand.size,
                      {{{-half, 1.2}, {half, 1.2}, {0.1, 0.7}, {0.2, 0.7}, {0.3, 0.7}}});
}

/// All fingers stretched and apart, on a circle around the wrist of twice the hand's size. Here
/// (x, y) is the wrist.
inline platform::HandObservation spreadHand(const Hand& hand) {
  const auto onCircle = [](double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return platform::RecognizedPoint{2 * std::cos(angle), 2 * std::sin(angle), 0};
  };
  return handWithTips(hand, hand.x, hand.y,
                      {{{-1.2, 0.8}, onCircle(110), onCircle(95), onCircle(80), onCircle(65)}});
}

/// A grey frame; its pixels say nothing, scripted detectors do not look.
inline pixels::PixelBuffer frameOf(int width, int height, double time = 0) {
  const std::size_t strideBytes = static_cast<std::size_t>(width) * 4;
  const std::vector<std::uint8_t> grey(strideBytes * static_cast<std::size_t>(height), 0x80);
  return {pixels::Image::copyOf(grey.data(), width, height, strideBytes), time};
}

}  // namespace support
