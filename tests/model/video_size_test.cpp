#include "model/video_size.h"

#include <gtest/gtest.h>

#include <limits>

namespace model {
namespace {

TEST(VideoSize, AVideoOfASixteenToNineCanvasIs720High) {
  EXPECT_EQ(videoHeight(16.0 / 9), 720);
}

TEST(VideoSize, AVideoOfAFourToThreeCanvasIs960High) {
  EXPECT_EQ(videoHeight(4.0 / 3), 960);
}

TEST(VideoSize, AnOddHeightIsMadeEvenByOneMore) {
  EXPECT_EQ(videoHeight(1280.0 / 721), 722);
  EXPECT_EQ(videoHeight(1280.0 / 720.6), 722);
}

TEST(VideoSize, HalvesAreRoundedAwayFromZero) {
  EXPECT_EQ(videoHeight(1280.0 / 719.5), 720);
}

TEST(VideoSizeDeathTest, AnAspectThatIsNoneEndsTheProgram) {
  EXPECT_DEATH(videoHeight(0), "");
  EXPECT_DEATH(videoHeight(1e-9), "");
  EXPECT_DEATH(videoHeight(-1), "");
  EXPECT_DEATH(videoHeight(std::numeric_limits<double>::quiet_NaN()), "");
}

}  // namespace
}  // namespace model
