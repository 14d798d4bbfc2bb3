#include "hand/hand_tracker.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace hand {
namespace {

using platform::Chirality;

/// The pen of a smaller hand would be noise; image heights.
constexpr double kMinPenSize = 0.01;

struct MeasuredHand {
  Reading reading;
  bool spread = false;
};

std::vector<MeasuredHand> measure(const std::vector<platform::HandObservation>& observations,
                                  double aspect) {
  std::vector<MeasuredHand> hands;
  for (const platform::HandObservation& observation : observations) {
    if (const std::optional<Reading> seen = reading(observation, aspect)) {
      hands.push_back({*seen, isSpread(*seen, aspect)});
    }
  }
  return hands;
}

/// A hand whose side the detector could not tell may always change the colour.
bool mayChangeColor(Chirality chirality, ColorHand colorHand) {
  switch (colorHand) {
    case ColorHand::left:
      return chirality != Chirality::right;
    case ColorHand::right:
      return chirality != Chirality::left;
    case ColorHand::either:
      return true;
  }
  return false;
}

/// With `either` there is no other hand.
std::optional<Chirality> otherThan(ColorHand colorHand) {
  switch (colorHand) {
    case ColorHand::left:
      return Chirality::right;
    case ColorHand::right:
      return Chirality::left;
    case ColorHand::either:
      return std::nullopt;
  }
  return std::nullopt;
}

/// The larger one of the hands that can hold the pen: rather one that is not held open, rather the
/// one that does not change the colour. `hands` is not empty.
const Reading& choosePenHand(const std::vector<MeasuredHand>& hands, ColorHand colorHand) {
  std::vector<const Reading*> candidates;
  for (const MeasuredHand& hand : hands) {
    if (!hand.spread) candidates.push_back(&hand.reading);
  }
  if (candidates.empty()) {
    for (const MeasuredHand& hand : hands) candidates.push_back(&hand.reading);
  }
  if (const std::optional<Chirality> penSide = otherThan(colorHand);
      penSide && candidates.size() >= 2) {
    std::vector<const Reading*> onPenSide;
    std::ranges::copy_if(candidates, std::back_inserter(onPenSide),
                         [&](const Reading* hand) { return hand->chirality == *penSide; });
    if (!onPenSide.empty()) candidates = std::move(onPenSide);
  }
  const Reading* chosen = candidates.front();
  for (const Reading* hand : candidates) {
    if (hand->size > chosen->size) chosen = hand;
  }
  return *chosen;
}

}  // namespace

HandOutput HandTracker::process(const pixels::PixelBuffer& frame, double time) {
  const double aspect =
      frame.height() > 0 ? static_cast<double>(frame.width()) / frame.height() : 1.0;

  const platform::Result<std::vector<platform::HandObservation>> observations =
      request_.perform(frame);
  HandOutput output;
  if (!observations) {
    liftPen();
    output.errorText = observations.error().description;
    return output;
  }
  const std::vector<MeasuredHand> hands = measure(observations.value(), aspect);
  if (hands.empty()) {
    liftPen();
    return output;
  }
  const ColorHand colorHandNow = colorHand();
  output.handCount = static_cast<int>(hands.size());
  output.spread = std::ranges::any_of(hands, [&](const MeasuredHand& hand) {
    return hand.spread && mayChangeColor(hand.reading.chirality, colorHandNow);
  });
  const Reading& penHand = choosePenHand(hands, colorHandNow);
  if (penHand.size > kMinPenSize) {
    output.pen = follow(penHand, aspect, time);
  } else {
    liftPen();
  }
  return output;
}

ColorHand HandTracker::colorHand() const {
  const std::lock_guard guard(lock_);
  return colorHand_;
}

void HandTracker::setColorHand(ColorHand hand) {
  const std::lock_guard guard(lock_);
  colorHand_ = hand;
}

PenSample HandTracker::follow(const Reading& penHand, double aspect, double time) {
  const double ratio = distance(penHand.thumbTip, penHand.indexTip, aspect) / penHand.size;
  if (pinching_ ? ratio > kPinchOff : ratio < kPinchOn) pinching_ = !pinching_;

  // The canvas is a mirror and counts from the top.
  const double x = 1 - (penHand.thumbTip.x + penHand.indexTip.x) * 0.5;
  const double y = 1 - (penHand.thumbTip.y + penHand.indexTip.y) * 0.5;
  return {.x = filterX_.filter(x, time),
          .y = filterY_.filter(y, time),
          .size = filterSize_.filter(penHand.size, time),
          .down = pinching_};
}

void HandTracker::liftPen() {
  pinching_ = false;
  filterX_.reset();
  filterY_.reset();
  filterSize_.reset();
}

}  // namespace hand
