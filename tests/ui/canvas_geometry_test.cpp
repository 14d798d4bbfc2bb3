#include "ui/canvas_geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace ui {
namespace {

constexpr double kFourToThree = 4.0 / 3.0;
constexpr double kTolerance = 0.005;

void expectRect(const QRectF& rect, double x, double y, double width, double height) {
  EXPECT_NEAR(rect.x(), x, kTolerance);
  EXPECT_NEAR(rect.y(), y, kTolerance);
  EXPECT_NEAR(rect.width(), width, kTolerance);
  EXPECT_NEAR(rect.height(), height, kTolerance);
}

TEST(CanvasRect, AViewWiderThanTheCanvasLeavesRoomAtTheSides) {
  expectRect(canvasRect({1000, 500}, kFourToThree), 166.67, 0, 666.67, 500);
}

TEST(CanvasRect, AViewTallerThanTheCanvasLeavesRoomAboveAndBelow) {
  expectRect(canvasRect({400, 600}, kFourToThree), 0, 150, 400, 300);
}

TEST(CanvasRect, WithoutAnAspectTheCanvasIsTheWholeView) {
  expectRect(canvasRect({640, 480}, 0), 0, 0, 640, 480);
  expectRect(canvasRect({640, 480}, std::numeric_limits<double>::quiet_NaN()), 0, 0, 640, 480);
}

TEST(CanvasRect, AViewWithoutAreaIsItsOwnCanvas) {
  expectRect(canvasRect({0, 480}, kFourToThree), 0, 0, 0, 480);
}

TEST(Normalized, TheMiddleOfTheViewIsTheMiddleOfTheCanvas) {
  const QPointF point = normalized({500, 250}, canvasRect({1000, 500}, kFourToThree));

  EXPECT_NEAR(point.x(), 0.5, 1e-9);
  EXPECT_NEAR(point.y(), 0.5, 1e-9);
}

TEST(Normalized, APressBesideTheCanvasIsPinnedToItsNearestEdge) {
  const QRectF canvas = canvasRect({1000, 500}, kFourToThree);

  EXPECT_EQ(normalized({20, 125}, canvas), QPointF(0, 0.25));
  EXPECT_EQ(normalized({990, 125}, canvas), QPointF(1, 0.25));
  EXPECT_EQ(normalized({500, -3}, canvas).y(), 0);
  EXPECT_EQ(normalized({500, 503}, canvas).y(), 1);
}

TEST(Normalized, ACanvasWithoutAreaGivesItsTopLeftCorner) {
  EXPECT_EQ(normalized({5, 5}, {0, 0, 0, 480}), QPointF(0, 0));
  EXPECT_EQ(normalized({5, 5}, {0, 0, 640, 0}), QPointF(0, 0));
}

TEST(DevicePixels, EdgesGoToTheNearestPixel) {
  EXPECT_EQ(devicePixels({10.3, 0, 99.5, 50}, 1.5), QRect(15, 0, 150, 75));
}

}  // namespace
}  // namespace ui
