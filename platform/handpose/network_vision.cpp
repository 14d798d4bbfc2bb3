#include "platform/handpose/network_vision.h"

#include <opencv2/core.hpp>
#include <utility>

#include "platform/handpose/embedded_networks.h"

namespace platform::handpose {

NetworkVision::NetworkVision(HandFinder finder, LandmarkReader reader)
    : finder_(std::move(finder)), reader_(std::move(reader)) {}

Result<NetworkVision> NetworkVision::load() {
  // The networks are too small to gain from a second thread, and the other cores draw.
  cv::setNumThreads(1);
  auto finder = HandFinder::load(handFinderFile());
  if (!finder) return finder.error();
  auto reader = LandmarkReader::load(handLandmarksFile());
  if (!reader) return reader.error();
  return NetworkVision(std::move(finder).value(), std::move(reader).value());
}

Result<std::vector<HandCandidate>> NetworkVision::find(const pixels::Image& picture,
                                                       const Region& region) {
  return finder_.find(picture, region);
}

Result<HandReading> NetworkVision::read(const pixels::Image& picture, const HandCrop& crop) {
  return reader_.read(picture, crop);
}

}  // namespace platform::handpose
