#include "platform/handpose/embedded_networks.h"

// Defined in network_files.S.
extern "C" {
extern const std::uint8_t wavescribe_hand_finder_begin[];
extern const std::uint8_t wavescribe_hand_finder_end[];
extern const std::uint8_t wavescribe_hand_landmarks_begin[];
extern const std::uint8_t wavescribe_hand_landmarks_end[];
}

namespace platform::handpose {

std::span<const std::uint8_t> handFinderFile() {
  return {wavescribe_hand_finder_begin, wavescribe_hand_finder_end};
}

std::span<const std::uint8_t> handLandmarksFile() {
  return {wavescribe_hand_landmarks_begin, wavescribe_hand_landmarks_end};
}

}  // namespace platform::handpose
