#include "platform/handpose/hand_crop.h"

#include <gtest/gtest.h>

#include <numbers>

namespace platform::handpose {
namespace {

constexpr double kQuarter = std::numbers::pi / 2;

void expectNear(Point actual, Point expected) {
  EXPECT_NEAR(actual.x, expected.x, 1e-9);
  EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

TEST(HandCrop, AnUprightCropRunsFromItsTopLeftCorner) {
  const HandCrop crop{{100, 60}, 40, 0};
  expectNear(crop.toPicture({0, 0}), {80, 40});
  expectNear(crop.toPicture({1, 0.5}), {120, 60});
}

TEST(HandCrop, InACropTurnedClockwiseUpIsRightInThePicture) {
  const HandCrop crop{{100, 60}, 40, kQuarter};
  expectNear(crop.toPicture({0.5, 0}), {120, 60});
  expectNear(crop.toPicture({0, 0.5}), {100, 40});
}

TEST(HandCrop, ToCropUndoesToPicture) {
  for (double angle : {0.0, 0.5, -1.2, 3.0}) {
    const HandCrop crop{{-20, 700}, 333, angle};
    expectNear(crop.toCrop(crop.toPicture({0.1, 0.9})), {0.1, 0.9});
    expectNear(crop.toPicture(crop.toCrop({12, 34})), {12, 34});
  }
}

TEST(HandCrop, LeavesAMarginAroundTheHand) {
  const HandCrop crop = HandCrop::around({{10, 20}, 100, 0.3});
  EXPECT_EQ(crop.centre, (Point{10, 20}));
  EXPECT_DOUBLE_EQ(crop.side, 150);
  EXPECT_DOUBLE_EQ(crop.angle, 0.3);
}

}  // namespace
}  // namespace platform::handpose
