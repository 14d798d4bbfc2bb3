#include "platform/handpose/still_picture.h"

#include <algorithm>
#include <utility>

#include "platform/handpose/gates.h"

namespace platform::handpose {
namespace {

constexpr int kLooks = 3;  // The first crop is rough; each next one is made from the joints read.

/// The regions to search one after the other, while hands are missing: all of it, then closer.
std::vector<Region> regionsOf(const pixels::Image& picture) {
  const double width = picture.width();
  const double height = picture.height();
  return {{0, 0, width, height}};
}

Result<HandReading> readClosely(HandVision& vision, const pixels::Image& picture, HandBox box) {
  HandReading best;
  for (int look = 0; look < kLooks; ++look) {
    auto reading = vision.read(picture, HandCrop::around(box));
    if (!reading) return reading.error();
    if (reading.value().presence < best.presence) break;
    best = std::move(reading).value();
    box = boxOf(best.landmarks);
  }
  return best;
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
  std::vector<HandReading> found;
  for (const Region& region : regionsOf(picture)) {
    if (found.size() >= most) break;
    const auto candidates = vision.find(picture, region);
    if (!candidates) return candidates.error();
    for (const HandCandidate& candidate : candidates.value()) {
      const auto reading = readClosely(vision, picture, candidate.box);
      if (!reading) return reading.error();
      if (isNewHand(reading.value(), picture) && !isAmong(reading.value(), found)) {
        found.push_back(reading.value());
      }
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
