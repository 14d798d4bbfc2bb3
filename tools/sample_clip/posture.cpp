#include "tools/sample_clip/posture.h"

#include <cmath>
#include <cstddef>

namespace sample_clip {
namespace {

// Places below are in hand sizes from the wrist, as the camera sees the hand.

constexpr std::array<Place, 5> kKnuckles{{{.38, .45}, {.28, .98}, {0, 1}, {-.22, .95}, {-.4, .85}}};

constexpr std::array<Place, 5> kSpreadTips{
    {{1.2, .8}, {.684, 1.88}, {.17, 2}, {-.36, 1.97}, {-.84, 1.81}}};

/// From the wrist to where thumb and index finger meet when they pinch.
constexpr Place kPinch{.45, 1.2};

HandPosture handFrom(platform::Chirality chirality, double size, Place wrist,
                     const std::array<Place, 5>& bends, const std::array<Place, 5>& tips) {
  HandPosture hand{chirality, size, wrist, kKnuckles, bends, tips};
  for (auto* places : {&hand.knuckles, &hand.bends, &hand.tips}) {
    for (Place& place : *places) place = wrist + size * place;
  }
  return hand;
}

HandPosture writingHand(const WritingHand& right) {
  const double half = right.opening / 2;
  const std::array<Place, 5> tips{{kPinch + Place{.6 * half, -.8 * half},
                                   kPinch + Place{-.6 * half, .8 * half},
                                   {0.12, 0.72},
                                   {-.1, .68},
                                   {-.25, .62}}};
  std::array<Place, 5> bends{};
  for (std::size_t i = 0; i < bends.size(); ++i) bends[i] = between(kKnuckles[i], tips[i], .5);
  bends[0] = bends[0] + Place{.12, -.02};
  bends[1] = bends[1] + Place{.12, .22};
  for (std::size_t i = 2; i < bends.size(); ++i) bends[i] = kKnuckles[i] + Place{.02, .28};

  const Place pen{(1 - right.pen.x) * kAspect, 1 - right.pen.y};
  return handFrom(platform::Chirality::right, right.size, pen + -right.size * kPinch, bends, tips);
}

HandPosture colorHand(double raised, double size) {
  std::array<Place, 5> bends{};
  for (std::size_t i = 0; i < bends.size(); ++i) {
    bends[i] = between(kKnuckles[i], kSpreadTips[i], .55);
  }
  HandPosture hand = handFrom(platform::Chirality::left, size,
                              {0.86 * kAspect, -0.4 + 0.75 * raised}, bends, kSpreadTips);
  for (auto* places : {&hand.knuckles, &hand.bends, &hand.tips}) {
    for (Place& place : *places) place.x = 2 * hand.wrist.x - place.x;
  }
  return hand;
}

}  // namespace

Place operator+(Place a, Place b) {
  return {a.x + b.x, a.y + b.y};
}
Place operator*(double factor, Place place) {
  return {factor * place.x, factor * place.y};
}
Place between(Place a, Place b, double t) {
  return (1 - t) * a + t * b;
}

std::vector<HandPosture> handsAt(const Moment& moment) {
  return {writingHand(moment.right), colorHand(moment.leftRaised, moment.right.size)};
}

platform::HandObservation observed(const HandPosture& hand) {
  using enum platform::HandJoint;
  const auto at = [](Place place) {
    return platform::RecognizedPoint{place.x / kAspect, place.y, 0.9F};
  };
  platform::HandObservation seen;
  seen.chirality = hand.chirality;
  seen[wrist] = at(hand.wrist);
  seen[thumbTip] = at(hand.tips[0]);
  seen[indexTip] = at(hand.tips[1]);
  seen[middleMCP] = at(hand.knuckles[2]);
  seen[middleTip] = at(hand.tips[2]);
  seen[ringTip] = at(hand.tips[3]);
  seen[littleTip] = at(hand.tips[4]);
  return seen;
}

}  // namespace sample_clip
