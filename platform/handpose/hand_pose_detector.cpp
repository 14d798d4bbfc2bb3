#include "platform/handpose/hand_pose_detector.h"

#include <utility>

#include "platform/handpose/network_vision.h"
#include "platform/handpose/observation.h"

namespace platform::handpose {
namespace {

Result<std::unique_ptr<HandVision>> loadNetworks() {
  auto vision = NetworkVision::load();
  if (!vision) return vision.error();
  return std::unique_ptr<HandVision>(std::make_unique<NetworkVision>(std::move(vision).value()));
}

}  // namespace

HandPoseDetector::HandPoseDetector() : HandPoseDetector(loadNetworks) {}

HandPoseDetector::HandPoseDetector(LoadVision load) : load_(std::move(load)) {}

Result<std::vector<HandObservation>> HandPoseDetector::perform(const pixels::PixelBuffer& frame) {
  if (!frame.image) return Error{"The camera frame holds no picture."};
  if (!vision_) {
    auto loaded = load_();
    if (!loaded) return loaded.error();
    vision_ = std::move(loaded).value();
    tracks_.emplace(*vision_);
  }
  const auto hands = tracks_->follow(*frame.image, frame.time);
  if (!hands) return hands.error();
  std::vector<HandObservation> observations;
  for (const TrackedHand& hand : hands.value()) {
    observations.push_back(observationOf(hand, frame.width(), frame.height()));
  }
  return observations;
}

}  // namespace platform::handpose
