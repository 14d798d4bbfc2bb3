#include "platform/handpose/hand_tracks.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/handpose/gates.h"

namespace platform::handpose {
namespace {

constexpr std::size_t kMostHands = HandPoseRequest::maximumHandCount;
constexpr double kLongestGap = 0.5;  // Seconds without a picture after which all may be different.
// Seconds from one search to the next. Once a hand is followed, the other one may take its time;
// with two of them there is only the question whether both are hands.
constexpr double kSearchInterval = 0.03;
constexpr double kSearchIntervalBesideHand = 0.2;
constexpr double kSearchIntervalBesideTwo = 0.4;
constexpr int kMostMisses = 1;  // A hand is reported this many frames after it was last seen.
// A reading this far off the middle of its crop, as a share of the crop's side, was cut off by it:
// the hand moves fast, and a second look pays.
constexpr double kOffCentre = 0.17;
constexpr double kBetterSwapped = 0.2;  // By so much less strange, before two readings are swapped.
constexpr double kSeenWithin = 0.5;     // Of a hand's size: a candidate so near confirms it.
constexpr double kReach = 1.5;          // How far a hand may have gone while it was lost, in hands.

/// What has been read of the other hand, or nothing.
const HandReading* readOfOther(const std::vector<std::optional<HandReading>>& readings,
                               std::size_t hand) {
  for (std::size_t i = 0; i < readings.size(); ++i) {
    if (i != hand && readings[i]) return &*readings[i];
  }
  return nullptr;
}

}  // namespace

HandTracks::HandTracks(HandVision& vision) : vision_(vision) {}

Result<std::vector<TrackedHand>> HandTracks::follow(const pixels::Image& picture, double time) {
  beginAnewAfterBreak(picture, time);
  auto readings = readTracks(picture);
  if (!readings) return readings.error();
  Readings settled = std::move(readings).value();
  keepHandsApart(settled);
  apply(settled);
  if (searchIsDue(time)) {
    if (const auto searched = search(picture); !searched) return searched.error();
    lastSearch_ = time;
  }
  return report();
}

void HandTracks::beginAnewAfterBreak(const pixels::Image& picture, double time) {
  const bool isNext = lastTime_ && time >= *lastTime_ && time - *lastTime_ <= kLongestGap;
  if (!isNext || picture.width() != width_ || picture.height() != height_) {
    tracks_.clear();
    refused_.clear();
    lastSearch_.reset();
  }
  lastTime_ = time;
  width_ = picture.width();
  height_ = picture.height();
}

Result<HandTracks::Readings> HandTracks::readTracks(const pixels::Image& picture) {
  Readings readings;
  for (const HandTrack& track : tracks_) {
    HandCrop crop = track.crop();
    auto reading = vision_.read(picture, crop);
    if (!reading) return reading.error();
    HandReading best = std::move(reading).value();
    const HandBox box = boxOf(best.landmarks);
    if (keepsOn(best, picture) && distance(box.centre, crop.centre) > kOffCentre * crop.side) {
      crop.centre = box.centre;
      auto second = vision_.read(picture, crop);
      if (!second) return second.error();
      if (keepsOn(second.value(), picture)) best = std::move(second).value();
    }
    readings.push_back(keepsOn(best, picture) ? std::optional(best) : std::nullopt);
  }
  return readings;
}

void HandTracks::keepHandsApart(Readings& readings) {
  if (readings.size() < 2 || !readings[0] || !readings[1]) return;
  const auto cost = [&](std::size_t track, std::size_t reading) {
    return tracks_[track].strangeness(*readings[reading]);
  };
  if (cost(0, 1) + cost(1, 0) + kBetterSwapped < cost(0, 0) + cost(1, 1)) {
    std::swap(readings[0], readings[1]);
  }
  if (coverSameHand(boxOf(readings[0]->landmarks), boxOf(readings[1]->landmarks))) {
    const int stranger = cost(0, 0) <= cost(1, 1) ? 1 : 0;
    readings.erase(readings.begin() + stranger);
    tracks_.erase(tracks_.begin() + stranger);
  }
}

void HandTracks::apply(const Readings& readings) {
  for (std::size_t i = 0; i < tracks_.size(); ++i) {
    if (readings[i]) {
      tracks_[i].follow(*readings[i], readOfOther(readings, i));
    } else {
      tracks_[i].miss();
    }
  }
  std::erase_if(tracks_, [&](const HandTrack& track) {
    return track.misses() > kMostMisses || (track.misses() > 0 && isFollowed(track.box()));
  });
}

bool HandTracks::isFollowed(const HandBox& box) const {
  return std::any_of(tracks_.begin(), tracks_.end(), [&](const HandTrack& track) {
    return track.misses() == 0 && coverSameHand(track.box(), box);
  });
}

bool HandTracks::hasLostHand() const {
  return std::any_of(tracks_.begin(), tracks_.end(),
                     [](const HandTrack& track) { return track.misses() > 0; });
}

bool HandTracks::searchIsDue(double time) const {
  const double interval = tracks_.empty() || hasLostHand() ? kSearchInterval
                          : tracks_.size() < kMostHands    ? kSearchIntervalBesideHand
                                                           : kSearchIntervalBesideTwo;
  return !lastSearch_ || time - *lastSearch_ >= interval;
}

Result<void> HandTracks::search(const pixels::Image& picture) {
  const Region whole{0, 0, 1.0 * picture.width(), 1.0 * picture.height()};
  auto found = vision_.find(picture, whole);
  if (!found) return found.error();
  std::vector<HandCandidate> candidates = std::move(found).value();
  confirmTracks(candidates);
  std::erase_if(candidates, [&](const auto& candidate) { return isFollowed(candidate.box); });
  // Places that were no hands a moment ago come last, lest they keep others from being looked at.
  const auto firstKnown =
      std::stable_partition(candidates.begin(), candidates.end(),
                            [&](const auto& candidate) { return !wasRefused(candidate.box); });
  if (firstKnown == candidates.begin()) refused_.clear();

  // A look costs more than the search: after the first one in vain the next frame goes on.
  for (const HandCandidate& candidate : candidates) {
    if (tracks_.size() == kMostHands && !hasLostHand()) break;
    const auto reading = vision_.read(picture, HandCrop::around(candidate.box));
    if (!reading) return reading.error();
    if (!isNewHand(candidate, reading.value(), picture)) {
      refused_.push_back(candidate.box);
      break;
    }
    take(reading.value());
  }
  return {};
}

void HandTracks::confirmTracks(const std::vector<HandCandidate>& candidates) {
  for (HandTrack& track : tracks_) {
    double found = 0;
    for (const HandCandidate& candidate : candidates) {
      const double size = std::max(candidate.box.size, track.box().size);
      if (distance(candidate.box.centre, track.box().centre) < kSeenWithin * size) {
        found = std::max(found, candidate.score);
      }
    }
    track.confirm(found);
  }
  std::erase_if(tracks_, [](const HandTrack& track) { return track.isPhantom(); });
}

bool HandTracks::wasRefused(const HandBox& box) const {
  return std::any_of(refused_.begin(), refused_.end(),
                     [&](const HandBox& refused) { return coverSameHand(refused, box); });
}

void HandTracks::take(const HandReading& reading) {
  const HandBox box = boxOf(reading.landmarks);
  if (isFollowed(box)) return;
  const auto lost = std::find_if(tracks_.begin(), tracks_.end(), [&](const HandTrack& track) {
    return track.misses() > 0 && track.strangeness(reading) < kReach;
  });
  if (lost != tracks_.end()) {
    lost->follow(reading);
  } else if (tracks_.size() < kMostHands) {
    const auto vote =
        tracks_.empty() ? ChiralityVote() : ChiralityVote::besides(tracks_[0].chirality());
    tracks_.emplace_back(nextId_++, reading, vote);
  }
}

std::vector<TrackedHand> HandTracks::report() const {
  std::vector<TrackedHand> hands;
  for (const HandTrack& track : tracks_) hands.push_back(track.report());
  std::stable_sort(hands.begin(), hands.end(),
                   [](const auto& a, const auto& b) { return a.score > b.score; });
  return hands;
}

}  // namespace platform::handpose
