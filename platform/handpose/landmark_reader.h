#pragma once

#include <cstdint>
#include <span>

#include "platform/handpose/hand_vision.h"
#include "platform/handpose/network.h"

namespace platform::handpose {

/// The network that reads the joints of one hand in an upright crop.
class LandmarkReader {
 public:
  /// `file`: the network as ONNX.
  static Result<LandmarkReader> load(std::span<const std::uint8_t> file);

  /// Where the network says something that is no number, presence is 0.
  Result<HandReading> read(const pixels::Image& picture, const HandCrop& crop);

 private:
  explicit LandmarkReader(Network network);

  Network network_;
};

}  // namespace platform::handpose
