#include "tools/replay/frame_source.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "pixels/surface.h"
#include "platform/png/png_encoder.h"
#include "tests/support/scoped_ordinary_user.h"
#include "tests/support/temporary_folder.h"

namespace replay {
namespace {

void writePicture(const std::filesystem::path& path, std::uint8_t grey) {
  pixels::Surface surface(8, 6);
  for (int y = 0; y < 6; ++y) {
    for (int i = 0; i < 32; ++i) surface.view().row(y)[i] = i % 4 == 3 ? 255 : grey;
  }
  const std::vector<std::uint8_t> png = platform::PngEncoder().encodePng(surface).value();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
}

TEST(FrameSource, ReadsAVideoFrameByFrameWithItsTimes) {
  const auto source = openFrames(WAVESCRIBE_ASSETS "/sample.webm");
  ASSERT_TRUE(source) << source.error().description;
  int count = 0;
  while (true) {
    const auto frame = source.value()->next();
    ASSERT_TRUE(frame) << frame.error().description;
    if (!frame.value()) break;
    EXPECT_EQ(frame.value()->height(), 360);
    EXPECT_NEAR(frame.value()->time, count / 30.0, 0.001);
    ++count;
  }
  EXPECT_GT(count, 300);
}

TEST(FrameSource, ReadsAFolderInTheOrderOfItsNumbers) {
  const support::TemporaryFolder folder;
  writePicture(folder.path() / "shot 10.png", 100);
  writePicture(folder.path() / "shot 9.png", 90);
  std::ofstream(folder.path() / "notes.txt") << "no number, no picture";

  const auto source = openFrames(folder.path());
  ASSERT_TRUE(source) << source.error().description;
  const auto first = source.value()->next();
  const auto second = source.value()->next();
  const auto end = source.value()->next();

  ASSERT_TRUE(first && second && end);
  EXPECT_EQ(first.value()->image->row(0)[0], 90);
  EXPECT_EQ(first.value()->time, 0);
  EXPECT_EQ(second.value()->image->row(5)[28], 100);
  EXPECT_NEAR(second.value()->time, 1.0 / 30, 1e-12);
  EXPECT_FALSE(end.value());
}

TEST(FrameSource, SaysWhyAClipCannotBeRead) {
  const support::TemporaryFolder folder;
  std::ofstream(folder.path() / "clip.webm") << "no video at all";
  EXPECT_FALSE(openFrames(folder.path() / "missing.webm"));
  EXPECT_FALSE(openFrames(folder.path() / "clip.webm"));
  EXPECT_FALSE(openFrames(folder.path()));
}

TEST(FrameSource, SaysSoWhenAFolderOnTheWayIsClosedToUs) {
  const support::TemporaryFolder folder;
  std::filesystem::create_directory(folder / "closed");
  std::ofstream(folder / "closed" / "clip.webm") << "never seen";
  std::filesystem::permissions(folder / "closed", std::filesystem::perms::none);
  const support::ScopedOrdinaryUser user;

  EXPECT_FALSE(openFrames(folder / "closed" / "clip.webm"));
  EXPECT_FALSE(openFrames(folder / "closed"));
}

}  // namespace
}  // namespace replay
