#pragma once

#include <cstdint>
#include <span>

namespace platform::handpose {

/// The networks of assets/networks, as they are in the program file. Any thread.
std::span<const std::uint8_t> handFinderFile();
std::span<const std::uint8_t> handLandmarksFile();

}  // namespace platform::handpose
