#pragma once

#include <compare>
#include <cstdint>

namespace platform {

/// A moment of a video: `value` units of 1 / kTimescale seconds since its start.
struct MediaTime {
  /// Units per second. Divisible by the usual frame rates (24, 25, 30, 50, 60).
  static constexpr std::int32_t kTimescale = 600;

  std::int64_t value = 0;

  /// The last unit reached by `seconds`: whole units, truncated toward zero.
  static MediaTime fromSeconds(double seconds) {
    return {static_cast<std::int64_t>(seconds * kTimescale)};
  }
  double seconds() const { return static_cast<double>(value) / kTimescale; }

  // NOLINTNEXTLINE(modernize-use-nullptr): the linter takes the comparison with 0 for a pointer.
  friend auto operator<=>(const MediaTime&, const MediaTime&) = default;
};

}  // namespace platform
