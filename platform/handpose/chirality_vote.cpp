#include "platform/handpose/chirality_vote.h"

#include <algorithm>
#include <cmath>

namespace platform::handpose {
namespace {

// One frame counts at most as odds of 7 to 1: its neighbours make the same mistakes.
constexpr double kMostPerFrame = 2;
constexpr double kMost = 24;
// However sure the network is of two hands that look alike, one of them counts.
constexpr double kLeastDoubt = 0.001;
// Odds of 2 to 1 decide at first; to change sides, the other one needs 50 to 1.
constexpr double kToDecide = 0.7;
constexpr double kToChange = 4;
// Odds of 4 to 1 that two hands are not both left or both right.
constexpr double kOtherHand = 1.4;

double logOdds(double probability) {
  const double doubted = std::clamp(probability, kLeastDoubt, 1 - kLeastDoubt);
  return std::log(doubted / (1 - doubted));
}

}  // namespace

ChiralityVote ChiralityVote::besides(Chirality other) {
  ChiralityVote vote;
  vote.evidence_ = -kOtherHand * static_cast<int>(other);
  return vote;
}

void ChiralityVote::add(double right, double weight, double beside) {
  const double seen = logOdds(right) - logOdds(beside);
  if (std::isnan(seen)) return;
  evidence_ += weight * std::clamp(seen, -kMostPerFrame, kMostPerFrame);
  evidence_ = std::clamp(evidence_, -kMost, kMost);
  const double needed = chirality_ == Chirality::unknown ? kToDecide : kToChange;
  if (evidence_ > needed) chirality_ = Chirality::right;
  if (evidence_ < -needed) chirality_ = Chirality::left;
}

}  // namespace platform::handpose
