#include "hand/one_euro_filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace hand {
namespace {

/// The speed is filtered with a cutoff that never changes, hertz.
constexpr double kSpeedCutoff = 1.0;

/// How much of a new sample a low-pass filter of `cutoff` hertz takes in after `dt` seconds.
double smoothingFactor(double cutoff, double dt) {
  const double tau = 1 / (2 * std::numbers::pi * cutoff);
  return 1 / (1 + tau / dt);
}

}  // namespace

double OneEuroFilter::filter(double x, double time) {
  if (!xPrev_) {
    xPrev_ = x;
    dxPrev_ = 0;
    tPrev_ = time;
    return x;
  }
  const double dt = std::max(time - tPrev_, kShortestStepSeconds);
  const double speedFactor = smoothingFactor(kSpeedCutoff, dt);
  const double speed = speedFactor * ((x - *xPrev_) / dt) + (1 - speedFactor) * dxPrev_;
  const double factor = smoothingFactor(minCutoff_ + beta_ * std::abs(speed), dt);
  const double filtered = factor * x + (1 - factor) * *xPrev_;

  xPrev_ = filtered;
  dxPrev_ = speed;
  tPrev_ = time;
  return filtered;
}

void OneEuroFilter::reset() {
  xPrev_.reset();
  dxPrev_ = 0;
}

}  // namespace hand
