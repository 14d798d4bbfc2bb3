#include "capture/frame_hub.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/support/pictures.h"

namespace capture {
namespace {

using support::greyFrame;

TEST(FrameHub, HasNoPictureBeforeTheFirstFrame) {
  const FrameHub hub;

  EXPECT_FALSE(hub.image());
}

TEST(FrameHub, KeepsTheLatestPicture) {
  FrameHub hub;
  const auto latest = greyFrame(4, 3);
  hub.update(greyFrame(2, 2));

  hub.update(latest);

  ASSERT_TRUE(hub.image());
  EXPECT_TRUE(hub.image()->sharesPixelsWith(*latest.image));
}

TEST(FrameHub, SharesThePixelsInsteadOfCopyingThem) {
  FrameHub hub;
  const auto frame = greyFrame(4, 3);

  hub.update(frame);

  EXPECT_TRUE(hub.image()->sharesPixelsWith(*frame.image));
}

TEST(FrameHub, AFirstFrameThatIsNoPictureLeavesItEmpty) {
  FrameHub hub;

  hub.update({.image = std::nullopt, .time = 1});

  EXPECT_FALSE(hub.image());
}

TEST(FrameHub, ALaterFrameThatIsNoPictureLeavesThePictureBefore) {
  FrameHub hub;
  const auto frame = greyFrame(4, 3);
  hub.update(frame);

  hub.update({.image = std::nullopt, .time = 1});

  ASSERT_TRUE(hub.image());
  EXPECT_TRUE(hub.image()->sharesPixelsWith(*frame.image));
}

TEST(FrameHub, IsReadWhileFramesArrive) {
  FrameHub hub;
  {
    const std::jthread camera([&] {
      for (int i = 0; i < 1000; ++i) hub.update(greyFrame(2, 2));
    });
    for (int i = 0; i < 1000; ++i) {
      const auto image = hub.image();
      if (image) {
        EXPECT_EQ(image->row(1)[0], 128);
      }
    }
  }

  EXPECT_TRUE(hub.image());
}

}  // namespace
}  // namespace capture
