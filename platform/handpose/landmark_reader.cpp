#include "platform/handpose/landmark_reader.h"

#include <cmath>
#include <utility>

#include "platform/handpose/sampling.h"

namespace platform::handpose {
namespace {

constexpr int kPixels = 128;
constexpr int kValuesPerJoint = 3;  // x, y, confidence.

}  // namespace

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
  const float* joint = outputs.value()[0].ptr<float>();
  const float* const hand = outputs.value()[1].ptr<float>();
  HandReading reading{.landmarks = {}, .presence = hand[0], .right = hand[1]};
  for (Landmark& landmark : reading.landmarks) {
    landmark = {crop.toPicture({joint[0], joint[1]}), joint[2]};
    joint += kValuesPerJoint;
  }
  const bool isUsable = isFinite(reading.landmarks) && std::isfinite(reading.presence) &&
                        std::isfinite(reading.right);
  if (!isUsable) reading = {};
  return reading;
}

}  // namespace platform::handpose
