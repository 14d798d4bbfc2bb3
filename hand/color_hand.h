#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace hand {

/// Which hand changes the colour when it is held open.
enum class ColorHand { left, right, either };

inline constexpr std::array kAllColorHands{ColorHand::left, ColorHand::right, ColorHand::either};

/// "left", "right" or "either".
std::string_view rawValue(ColorHand hand);
std::optional<ColorHand> colorHandFrom(std::string_view rawValue);

}  // namespace hand
