#include "platform/handpose/hand_track.h"

#include <algorithm>

#include "platform/handpose/gates.h"
#include "platform/handpose/steadying.h"

namespace platform::handpose {
namespace {

constexpr double kMostShrinking = 0.6;  // From one frame's crop to the next.
constexpr double kOtherSide = 0.7;      // As strange as a jump by so many hands.
constexpr double kMissedScore = 0.5;
constexpr int kMostDoubts = 3;
constexpr double kBeyondDoubt = 0.8;  // Score of a reading that needs nobody else's word.

}  // namespace

HandTrack::HandTrack(int id, const HandReading& first, const ChiralityVote& vote)
    : id_(id), landmarks_(first.landmarks), cropSize_(0), score_(0), vote_(vote) {
  follow(first);
}

TrackedHand HandTrack::report() const {
  return {id_, landmarks_, chirality(), misses_ > 0 ? kMissedScore * score_ : score_};
}

HandCrop HandTrack::crop() const {
  HandBox box = box_;
  box.size = cropSize_;
  return HandCrop::around(box);
}

double HandTrack::strangeness(const HandReading& reading) const {
  const double jump = distance(box_.centre, boxOf(reading.landmarks).centre) / box_.size;
  const double side = 2 * reading.right - 1;  // -1 left, 1 right.
  return jump + kOtherSide * std::max(0.0, -side * static_cast<int>(chirality()));
}

void HandTrack::follow(const HandReading& reading, const HandReading* beside) {
  landmarks_ = steadied(landmarks_, reading.landmarks);
  box_ = boxOf(reading.landmarks);
  cropSize_ = std::max(box_.size, kMostShrinking * cropSize_);
  score_ = scoreOf(reading);
  vote_.add(reading.right, reading.presence, beside ? beside->right : 0.5);
  misses_ = 0;
}

void HandTrack::miss() {
  ++misses_;
}

void HandTrack::confirm(double found) {
  doubts_ = agreeOnHand(found, score_) || score_ >= kBeyondDoubt ? 0 : doubts_ + 1;
}

bool HandTrack::isPhantom() const {
  return doubts_ >= kMostDoubts;
}

}  // namespace platform::handpose
