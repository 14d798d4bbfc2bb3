#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include "platform/handpose/hand_vision.h"

namespace test_support {

/// An open hand with its box at `box`, every joint with that confidence.
inline platform::handpose::Landmarks openHand(const platform::handpose::HandBox& box,
                                              double confidence = 0.9) {
  using platform::handpose::Point;
  // Finger by finger in a square from -0.5 to 0.5, the wrist at the bottom.
  static constexpr Point kJoints[] = {
      {0, 0.5},      {-0.2, 0.35},  {-0.34, 0.2},  {-0.43, 0.08}, {-0.5, 0},     {-0.14, -0.02},
      {-0.19, -0.2}, {-0.21, -0.3}, {-0.23, -0.4}, {0, -0.05},    {0, -0.27},    {0, -0.4},
      {0, -0.5},     {0.13, -0.02}, {0.17, -0.2},  {0.19, -0.31}, {0.21, -0.41}, {0.25, 0.05},
      {0.35, -0.08}, {0.42, -0.17}, {0.5, -0.25}};
  platform::handpose::Landmarks hand;
  const double c = box.size * std::cos(box.angle);
  const double s = box.size * std::sin(box.angle);
  for (std::size_t i = 0; i < hand.size(); ++i) {
    const auto [x, y] = kJoints[i];
    hand[i] = {{box.centre.x + c * x - s * y, box.centre.y + s * x + c * y}, confidence};
  }
  return hand;
}

/// A hand in the scripted world.
struct ScriptedHand {
  platform::handpose::HandBox box;
  double right = 1;      ///< What the networks believe.
  double presence = 1;   ///< 0: it is gone.
  bool isFound = true;   ///< False: only a closer look can see it.
  double found = 0.9;    ///< How surely the search sees it.
  bool isFront = false;  ///< Covers any other hand whose middle it reaches.
};

/// A vision whose world the test moves by hand. Pictures are not looked at.
class ScriptedHandVision final : public platform::handpose::HandVision {
 public:
  std::vector<ScriptedHand> hands;
  std::vector<platform::handpose::HandBox> phantoms;  ///< Look like hands from afar only.
  std::optional<platform::Error> failure;             ///< The next calls' answer.
  int finds = 0;
  std::vector<platform::handpose::HandCrop> reads;

  platform::Result<std::vector<platform::handpose::HandCandidate>> find(
      const pixels::Image&, const platform::handpose::Region&) override {
    ++finds;
    if (failure) return *failure;
    std::vector<platform::handpose::HandCandidate> candidates;
    for (const auto& box : phantoms) candidates.push_back({box, 0.95, 0.5});
    for (const ScriptedHand& hand : hands) {
      if (hand.isFound && hand.presence > 0)
        candidates.push_back({hand.box, hand.found, hand.right});
    }
    return candidates;
  }

  platform::Result<platform::handpose::HandReading> read(
      const pixels::Image&, const platform::handpose::HandCrop& crop) override {
    reads.push_back(crop);
    if (failure) return *failure;
    const ScriptedHand* seen = nullptr;
    for (const ScriptedHand& hand : hands) {
      const double off = distance(hand.box.centre, crop.centre);
      if (hand.presence <= 0 || off > 0.4 * crop.side) continue;
      if (!seen || off < distance(seen->box.centre, crop.centre)) seen = &hand;
    }
    if (!seen) {
      return platform::handpose::HandReading{
          openHand({crop.centre, 0.3 * crop.side, crop.angle}, 0.1), 0.02, 0.5};
    }
    for (const ScriptedHand& hand : hands) {
      if (hand.isFront && distance(hand.box.centre, seen->box.centre) < 0.4 * hand.box.size) {
        seen = &hand;
      }
    }
    return platform::handpose::HandReading{openHand(seen->box), seen->presence, seen->right};
  }
};

}  // namespace test_support
