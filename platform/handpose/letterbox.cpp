#include "platform/handpose/letterbox.h"

#include <algorithm>

namespace platform::handpose {

Letterbox Letterbox::fit(const Region& region, int width, int height) {
  const double scale = std::min(width / region.width, height / region.height);
  return {scale,
          {(width - scale * region.width) / 2 - scale * region.x,
           (height - scale * region.height) / 2 - scale * region.y}};
}

Point Letterbox::toPicture(Point inNetwork) const {
  return {(inNetwork.x - origin.x) / scale, (inNetwork.y - origin.y) / scale};
}

Point Letterbox::toNetwork(Point inPicture) const {
  return {origin.x + scale * inPicture.x, origin.y + scale * inPicture.y};
}

}  // namespace platform::handpose
