#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "platform/handpose/hand_tracks.h"
#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {

inline constexpr double kFrame = 1.0 / 30;

/// A camera of 640 x 480 before the scripted world, thirty times a second.
class HandTracksTest : public testing::Test {
 protected:
  std::vector<TrackedHand> next() {
    const auto hands = tracks.follow(picture, time += kFrame);
    EXPECT_TRUE(hands);
    return hands ? hands.value() : std::vector<TrackedHand>();
  }
  std::vector<TrackedHand> next(int frames) {
    std::vector<TrackedHand> hands;
    for (int i = 0; i < frames; ++i) hands = next();
    return hands;
  }
  static Point centreOf(const TrackedHand& hand) { return boxOf(hand.landmarks).centre; }
  /// The id of the hand at that place; 0: there is none.
  static int idAt(const std::vector<TrackedHand>& hands, Point place) {
    for (const TrackedHand& hand : hands) {
      if (distance(centreOf(hand), place) < 15) return hand.id;
    }
    return 0;
  }
  static pixels::Image blank(int width, int height) {
    const std::vector<std::uint8_t> data(4u * width * height);
    return pixels::Image::copyOf(data.data(), width, height, 4u * width);
  }

  test_support::ScriptedHandVision vision;
  HandTracks tracks{vision};
  pixels::Image picture = blank(640, 480);
  double time = 0;
};

}  // namespace platform::handpose
