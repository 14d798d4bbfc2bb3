#include "render/resampling.h"

#include <algorithm>
#include <cmath>

namespace render {

Resampling::Resampling(int from, double to, int count, bool isMirrored) : length_(count) {
  const double ratio = from / to;  // Old pixels per new one.
  // A tent of this half width around a new pixel's centre; between it and a box the difference is
  // not worth a second filter.
  const double half = std::max(ratio, 1.0);
  const double wanted = ratio <= 1 ? 2 : std::ceil(2 * half) + 1;
  taps_ = static_cast<int>(std::min(wanted, static_cast<double>(from)));
  firsts_.resize(static_cast<std::size_t>(length_));
  weights_.resize(static_cast<std::size_t>(length_) * static_cast<std::size_t>(taps_));
  std::vector<double> shares(static_cast<std::size_t>(taps_));
  for (int i = 0; i < length_; ++i) {
    const double centre = (i + 0.5) * ratio;
    const double old = isMirrored ? from - centre : centre;
    const int first = static_cast<int>(
        std::clamp(std::ceil(old - half - 0.5), 0.0, static_cast<double>(from - taps_)));
    double sum = 0;
    for (int k = 0; k < taps_; ++k) {
      const double share = std::max(1 - std::abs(first + k + 0.5 - old) / half, 0.0);
      shares[static_cast<std::size_t>(k)] = share;
      sum += share;
    }
    firsts_[static_cast<std::size_t>(i)] = first;
    int rest = 32768;
    std::int16_t* weights =
        weights_.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(taps_);
    for (int k = 0; k < taps_; ++k) {
      const double share = sum > 0 ? shares[static_cast<std::size_t>(k)] / sum : 1.0 / taps_;
      const int weight = std::min(static_cast<int>(std::lround(share * 32768)), rest);
      weights[k] = static_cast<std::int16_t>(std::min(weight, 32767));
      rest -= weight;
    }
    std::int16_t& largest = *std::max_element(weights, weights + taps_);
    largest = static_cast<std::int16_t>(std::min(largest + rest, 32767));
  }
}

}  // namespace render
