#include "platform/handpose/landmark_reader.h"

#include <cmath>
#include <utility>

#include "platform/handpose/sampling.h"

namespace platform::handpose {
namespace {

constexpr int kPixels = 128;
constexpr int kValuesPerJoint = 3;  // x, y, confidence.

}  // namespace

HandReading readingIn(const float* joints, const float* hand, const HandCrop& crop) {
  HandReading reading{.landmarks = {}, .presence = hand[0], .right = hand[1]};
  for (Landmark& landmark : reading.landmarks) {
    landmark = {crop.toPicture({joints[0], joints[1]}), joints[2]};
    joints += kValuesPerJoint;
  }
  const bool isUsable = isFinite(reading.landmarks) && std::isfinite(reading.presence) &&
                        std::isfinite(reading.right);
  return isUsable ? reading : HandReading();
}

LandmarkReader::LandmarkReader(Network network) : network_(std::move(network)) {}

Result<LandmarkReader> LandmarkReader::load(std::span<const std::uint8_t> file) {
  auto network = Network::load(
      file, {.name = "hand_landmarks",
             .width = kPixels,
             .height = kPixels,
             .outputs = {{"landmarks", {1, static_cast<int>(kJointCount), kValuesPerJoint}},
                         {"hand", {1, 2}}}});
  if (!network) return network.error();
  return LandmarkReader(std::move(network).value());
}

Result<HandReading> LandmarkReader::read(const pixels::Image& picture, const HandCrop& crop) {
  const auto outputs = network_.look(sample(picture, crop, kPixels));
  if (!outputs) return outputs.error();
  return readingIn(outputs.value()[0].ptr<float>(), outputs.value()[1].ptr<float>(), crop);
}

}  // namespace platform::handpose
