#include "platform/handpose/letterbox.h"

#include <gtest/gtest.h>

namespace platform::handpose {
namespace {

TEST(Letterbox, AWidePictureFillsTheWidthAndLiesInTheMiddle) {
  const Letterbox letterbox = Letterbox::fit({0, 0, 1280, 720}, 192, 144);
  EXPECT_DOUBLE_EQ(letterbox.scale, 0.15);
  EXPECT_EQ(letterbox.toNetwork({0, 0}), (Point{0, 18}));
  EXPECT_EQ(letterbox.toNetwork({1280, 720}), (Point{192, 126}));
}

TEST(Letterbox, ATallPictureFillsTheHeight) {
  const Letterbox letterbox = Letterbox::fit({0, 0, 100, 200}, 192, 144);
  EXPECT_DOUBLE_EQ(letterbox.scale, 0.72);
  EXPECT_EQ(letterbox.toNetwork({50, 200}), (Point{96, 144}));
}

TEST(Letterbox, ARegionIsLookedAtAsIfItWereThePicture) {
  const Letterbox letterbox = Letterbox::fit({640, 360, 640, 360}, 192, 144);
  EXPECT_DOUBLE_EQ(letterbox.scale, 0.3);
  EXPECT_EQ(letterbox.toNetwork({640, 360}), (Point{0, 18}));
}

TEST(Letterbox, ToPictureUndoesToNetwork) {
  const Letterbox letterbox = Letterbox::fit({-100, 30, 900, 2000}, 192, 144);
  const Point there = letterbox.toPicture(letterbox.toNetwork({77, 1234}));
  EXPECT_NEAR(there.x, 77, 1e-9);
  EXPECT_NEAR(there.y, 1234, 1e-9);
}

}  // namespace
}  // namespace platform::handpose
