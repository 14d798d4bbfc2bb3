#include "platform/handpose/hand_crop.h"

#include <cmath>

namespace platform::handpose {
namespace {

constexpr double kSidePerSize = 1.5;  // The margin with which the network was trained.

}  // namespace

HandCrop HandCrop::around(const HandBox& box) {
  return {box.centre, kSidePerSize * box.size, box.angle};
}

Point HandCrop::toPicture(Point inCrop) const {
  const double c = std::cos(angle) * side;
  const double s = std::sin(angle) * side;
  const double x = inCrop.x - 0.5;
  const double y = inCrop.y - 0.5;
  return {centre.x + c * x - s * y, centre.y + s * x + c * y};
}

Point HandCrop::toCrop(Point inPicture) const {
  const double c = std::cos(angle) / side;
  const double s = std::sin(angle) / side;
  const double x = inPicture.x - centre.x;
  const double y = inPicture.y - centre.y;
  return {0.5 + c * x + s * y, 0.5 + c * y - s * x};
}

}  // namespace platform::handpose
