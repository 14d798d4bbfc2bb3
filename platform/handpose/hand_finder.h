#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/handpose/hand_vision.h"
#include "platform/handpose/network.h"

namespace platform::handpose {

/// The network that looks at a whole region of a picture.
class HandFinder {
 public:
  /// `file`: the network as ONNX.
  static Result<HandFinder> load(std::span<const std::uint8_t> file);

  /// At most kMostCandidates, best first; of two that cover the same hand only the better one.
  Result<std::vector<HandCandidate>> find(const pixels::Image& picture, const Region& region);

  static constexpr std::size_t kMostCandidates = 6;

 private:
  explicit HandFinder(Network network);

  Network network_;
};

/// The candidates in the network's output (7 x rows x columns: score, centre, size, direction,
/// right), in the network's pixels.
std::vector<HandCandidate> candidatesIn(const float* output, int rows, int columns);

}  // namespace platform::handpose
