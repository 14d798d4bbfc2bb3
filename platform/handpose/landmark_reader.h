#pragma once

#include <cstdint>
#include <span>

#include "platform/handpose/hand_vision.h"
#include "platform/handpose/network.h"

namespace platform::handpose {

/// The reading in the network's outputs. `joints`: for each x, y (0 to 1 in the crop) and
/// confidence; `hand`: presence, right. Where something is no number there is no hand: presence is
/// 0.
HandReading readingIn(const float* joints, const float* hand, const HandCrop& crop);

/// The network that reads the joints of one hand in an upright crop.
class LandmarkReader {
 public:
  /// `file`: the network as ONNX.
  static Result<LandmarkReader> load(std::span<const std::uint8_t> file);

  Result<HandReading> read(const pixels::Image& picture, const HandCrop& crop);

 private:
  explicit LandmarkReader(Network network);

  Network network_;
};

}  // namespace platform::handpose
