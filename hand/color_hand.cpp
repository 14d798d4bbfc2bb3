#include "hand/color_hand.h"

namespace hand {

std::string_view rawValue(ColorHand hand) {
  switch (hand) {
    case ColorHand::left:
      return "left";
    case ColorHand::right:
      return "right";
    case ColorHand::either:
      return "either";
  }
  return {};
}

std::optional<ColorHand> colorHandFrom(std::string_view rawValueText) {
  for (const ColorHand hand : kAllColorHands) {
    if (rawValue(hand) == rawValueText) return hand;
  }
  return std::nullopt;
}

}  // namespace hand
