#pragma once

#include "platform/handpose/landmarks.h"

namespace platform::handpose {

/// A part of a picture, in its pixels. It may reach beyond the picture.
struct Region {
  double x = 0;
  double y = 0;
  double width = 0;   ///< > 0.
  double height = 0;  ///< > 0.

  friend bool operator==(const Region&, const Region&) = default;
};

/// How a region is put into a network's picture: scaled evenly until it just fits, in the middle.
struct Letterbox {
  double scale = 1;  ///< Network pixels per picture pixel.
  Point origin;      ///< Where the picture's top left corner comes to lie, network pixels.

  static Letterbox fit(const Region& region, int width, int height);

  Point toPicture(Point inNetwork) const;
  Point toNetwork(Point inPicture) const;
};

}  // namespace platform::handpose
