#include "platform/handpose/still_picture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "platform/handpose/gates.h"

namespace platform::handpose {
namespace {

// The first crop is rough; each next one is made from the joints read. They err differently.
constexpr std::size_t kLooks = 3;
constexpr double kLeastWeight = 1e-3;

/// The mean of several looks, in which a joint counts the more the surer it was seen. Presence is
/// the lowest of all looks: crops made from joints draw whatever is there towards looking like a
/// hand.
HandReading meanOf(const std::vector<HandReading>& looks) {
  HandReading mean{.landmarks = {}, .presence = 1, .right = 0};
  std::array<double, kJointCount> weights{};
  const double share = 1.0 / static_cast<double>(looks.size());
  for (const HandReading& look : looks) {
    mean.presence = std::min(mean.presence, look.presence);
    mean.right += share * look.right;
    for (std::size_t i = 0; i < kJointCount; ++i) {
      const Landmark& landmark = look.landmarks[i];
      const double weight = landmark.confidence * landmark.confidence + kLeastWeight;
      mean.landmarks[i].at.x += weight * landmark.at.x;
      mean.landmarks[i].at.y += weight * landmark.at.y;
      mean.landmarks[i].confidence += share * landmark.confidence;
      weights[i] += weight;
    }
  }
  for (std::size_t i = 0; i < kJointCount; ++i) {
    mean.landmarks[i].at.x /= weights[i];
    mean.landmarks[i].at.y /= weights[i];
  }
  return mean;
}

Result<HandReading> readClosely(HandVision& vision, const pixels::Image& picture, HandBox box) {
  std::vector<HandReading> looks;
  do {
    auto reading = vision.read(picture, HandCrop::around(box));
    if (!reading) return reading.error();
    looks.push_back(std::move(reading).value());
    box = boxOf(looks.back().landmarks);
  } while (looks.size() < kLooks && box.size > 0);
  return meanOf(looks);
}

bool isAmong(const HandReading& reading, const std::vector<HandReading>& hands) {
  const HandBox box = boxOf(reading.landmarks);
  return std::any_of(hands.begin(), hands.end(), [&](const HandReading& hand) {
    return coverSameHand(boxOf(hand.landmarks), box);
  });
}

}  // namespace

Result<std::vector<TrackedHand>> handsInStillPicture(HandVision& vision,
                                                     const pixels::Image& picture,
                                                     std::size_t most) {
  const auto candidates =
      vision.find(picture, {0, 0, 1.0 * picture.width(), 1.0 * picture.height()});
  if (!candidates) return candidates.error();
  std::vector<HandReading> found;
  for (const HandCandidate& candidate : candidates.value()) {
    const auto reading = readClosely(vision, picture, candidate.box);
    if (!reading) return reading.error();
    if (isNewHand(candidate, reading.value(), picture) && !isAmong(reading.value(), found)) {
      found.push_back(reading.value());
    }
  }
  std::stable_sort(found.begin(), found.end(), [](const HandReading& a, const HandReading& b) {
    return scoreOf(a) > scoreOf(b);
  });
  if (found.size() > most) found.resize(most);
  std::vector<TrackedHand> hands;
  for (const HandReading& reading : found) {
    const auto vote = hands.empty() ? ChiralityVote() : ChiralityVote::besides(hands[0].chirality);
    hands.push_back(HandTrack(static_cast<int>(hands.size()) + 1, reading, vote).report());
  }
  return hands;
}

}  // namespace platform::handpose
