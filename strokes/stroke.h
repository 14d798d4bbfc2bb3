#pragma once

#include <cstdint>

#include "strokes/stroke_points.h"

namespace strokes {

/// 128 random bits that tell one stroke from every other. Only ever compared.
struct StrokeId {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  friend bool operator==(const StrokeId&, const StrokeId&) = default;
};

/// One line of the painting.
struct Stroke {
  StrokeId id;          ///< Made when the stroke begins, never changed.
  StrokePoints points;  ///< Never empty in a stroke made by the store.
  int colorIndex = 0;   ///< Index into Palette::colors; any integer, taken modulo its size.
  double lastTime = 0;  ///< Seconds, monotonic: the latest activity. Fading counts from here.

  friend bool operator==(const Stroke&, const Stroke&) = default;
};

}  // namespace strokes
