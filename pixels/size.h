#pragma once

namespace pixels {

/// A width and a height. Whether they are device pixels or logical points, the user says.
struct Size {
  double width = 0;
  double height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

}  // namespace pixels
