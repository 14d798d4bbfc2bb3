#include "pixels/surface.h"

#include <gtest/gtest.h>

#include <utility>

namespace pixels {
namespace {

TEST(Surface, StartsTransparentWithAlignedRows) {
  Surface surface(17, 3);

  EXPECT_EQ(surface.strideBytes() % 64, 0u);
  for (int y = 0; y < 3; ++y) {
    for (int i = 0; i < 17 * 4; ++i) EXPECT_EQ(surface.row(y)[i], 0);
  }
}

TEST(Surface, ACopyHasPixelsOfItsOwn) {
  Surface surface(2, 2);
  Surface copy = surface;

  copy.view().row(1)[3] = 200;

  EXPECT_EQ(surface.row(1)[3], 0);
  EXPECT_FALSE(copy == surface);
}

TEST(Surface, EqualPixelsMakeEqualSurfacesWhateverPadsTheirRows) {
  Surface surface(2, 2);
  Surface other(2, 2);
  ASSERT_GT(surface.strideBytes(), 8u);

  other.view().row(0)[8] = 1;

  EXPECT_TRUE(other == surface);
  EXPECT_FALSE(other == Surface(1, 2));
}

TEST(Surface, AMoveLeavesAnEmptySurface) {
  Surface surface(2, 2);

  const Surface moved = std::move(surface);

  EXPECT_EQ(moved.width(), 2);
  EXPECT_TRUE(surface.isEmpty());  // NOLINT(bugprone-use-after-move): what the move promises
}

}  // namespace
}  // namespace pixels
