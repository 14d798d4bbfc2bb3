#pragma once

#include "platform/handpose/hand_finder.h"
#include "platform/handpose/hand_vision.h"
#include "platform/handpose/landmark_reader.h"

namespace platform::handpose {

/// Looks at pictures with the two networks that ship inside the program.
class NetworkVision final : public HandVision {
 public:
  /// Takes some tens of milliseconds and about 30 MB.
  static Result<NetworkVision> load();

  Result<std::vector<HandCandidate>> find(const pixels::Image& picture,
                                          const Region& region) override;
  Result<HandReading> read(const pixels::Image& picture, const HandCrop& crop) override;

 private:
  NetworkVision(HandFinder finder, LandmarkReader reader);

  HandFinder finder_;
  LandmarkReader reader_;
};

}  // namespace platform::handpose
