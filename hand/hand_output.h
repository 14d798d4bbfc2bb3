#pragma once

#include <optional>
#include <string>

namespace hand {

/// Where the pen of the hand is: smoothed, mirrored, in canvas coordinates.
struct PenSample {
  double x = 0;       ///< 0 at the canvas's left edge, 1 at its right edge.
  double y = 0;       ///< 0 at the top edge, 1 at the bottom edge.
  double size = 0;    ///< Size of the hand in image heights; larger is nearer.
  bool down = false;  ///< Thumb and index finger are pinched.

  friend bool operator==(const PenSample&, const PenSample&) = default;
};

/// What one camera frame said about the hands in it.
struct HandOutput {
  std::optional<PenSample> pen = std::nullopt;  ///< Absent when no hand could be measured.
  bool spread = false;                          ///< A colour hand is held open, fingers apart.
  int handCount = 0;                            ///< Hands that could be measured.
  std::optional<std::string> errorText = std::nullopt;  ///< Why the detection failed, when it did.

  friend bool operator==(const HandOutput&, const HandOutput&) = default;
};

}  // namespace hand
