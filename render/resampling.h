#pragma once

#include <cstdint>
#include <vector>

namespace render {

/// How one line of pixels becomes one of another length: which old pixels make a new one, and with
/// what weights. Straight lines between pixel centres when it grows, wider tents when it shrinks,
/// so that no old pixel is lost.
class Resampling {
 public:
  /// `from`, `to`: the two lengths, > 0; `to` may have a fraction. Only the first `count` new
  /// pixels are wanted. `isMirrored`: last pixel first.
  Resampling(int from, double to, int count, bool isMirrored);

  /// The number of new pixels.
  int length() const { return length_; }
  /// Old pixels per new one.
  int taps() const { return taps_; }
  /// The first old pixel of new pixel `i`; the following taps are its neighbours to the right.
  int first(int i) const { return firsts_[static_cast<std::size_t>(i)]; }
  const int* firsts() const { return firsts_.data(); }
  /// taps() weights, in 1/32768, together 32768 at most.
  const std::int16_t* weights(int i) const {
    return weights_.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(taps_);
  }

 private:
  int length_;
  int taps_;
  std::vector<int> firsts_;
  std::vector<std::int16_t> weights_;
};

}  // namespace render
