#include <gtest/gtest.h>

#include <cstdlib>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "pixels/image.h"
#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "render/canvas_renderer.h"
#include "tests/platform/ffmpeg/painted_scene.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kFrames = 8;
constexpr double kLeast = 38;  // Decibels.

/// A room in soft light behind somebody in a striped shirt, with a sensor's noise.
pixels::Image cameraPicture(int frame) {
  std::mt19937 random(static_cast<unsigned>(frame));
  pixels::Surface picture(kWidth, kHeight);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const bool isShirt = std::abs(x - 640) < 260 && y > 420;
      const int stripes = y / 24 % 2 * 60;
      const int light = 90 + x / 16 + y / 24;
      const int blue = isShirt ? 130 - stripes : light - 20;
      const int green = isShirt ? 60 + stripes : light;
      const int red = isShirt ? 50 + stripes : light + 12;
      std::uint8_t* pixel = picture.view().row(y) + 4 * x;
      const int noise = static_cast<int>(random() % 5) - 2;
      pixel[0] = static_cast<std::uint8_t>(blue + noise);
      pixel[1] = static_cast<std::uint8_t>(green + noise);
      pixel[2] = static_cast<std::uint8_t>(red + noise);
      pixel[3] = 255;
    }
  }
  return pixels::Image::copyOf(picture.row(0), kWidth, kHeight, picture.strideBytes());
}

pixels::Surface painted(int frame, render::CanvasBackground background) {
  render::RenderScene scene = support::paintedScene(frame);
  scene.background = background;
  scene.dim = 0.35;
  if (background == render::CanvasBackground::camera) scene.frame = cameraPicture(frame);
  pixels::Surface picture(kWidth, kHeight);
  render::CanvasRenderer::render(scene, {picture.view()}, {kWidth, kHeight});
  return picture;
}

class VideoQuality : public testing::TestWithParam<render::CanvasBackground> {};

TEST_P(VideoQuality, APaintingStaysClean) {
  const support::TemporaryFolder folder;
  platform::ffmpeg::FfmpegVideoWriterFactory factory;
  auto made = factory.make(folder / "a.mp4");
  ASSERT_TRUE(made.ok());
  const auto writer = std::move(made).value();
  ASSERT_TRUE(writer->addInput({kWidth, kHeight, 30}));
  ASSERT_TRUE(writer->startWriting());
  writer->startSession({});
  for (int i = 0; i < kFrames; ++i) {
    while (!writer->isReadyForMoreMediaData()) std::this_thread::yield();
    ASSERT_TRUE(writer->append(painted(i, GetParam()), {20 * (i + 1)}));
  }
  std::promise<void> finished;
  writer->finishWriting([&] { finished.set_value(); });
  finished.get_future().wait();

  const support::RecordedVideo video = support::readVideo(folder / "a.mp4");

  ASSERT_EQ(video.frames.size(), static_cast<std::size_t>(kFrames));
  for (int i = 0; i < kFrames; ++i) {
    const pixels::Surface original = painted(i, GetParam());
    const support::Planes planes = support::planesOf(original);
    const support::Planes& seen = video.frames[i].planes;
    const pixels::Surface& picture = video.frames[i].picture;
    EXPECT_GT(support::brightnessPsnr(original, picture), kLeast) << "frame " << i;
    EXPECT_GT(support::psnr(planes.y, seen.y), kLeast) << "frame " << i;
    EXPECT_GT(support::psnr(planes.u, seen.u), kLeast) << "frame " << i;
    EXPECT_GT(support::psnr(planes.v, seen.v), kLeast) << "frame " << i;
    // In red, green and blue the format's halved colour costs thin lines more than all compression
    // does: no video of this kind can show them better than this.
    const pixels::Surface best = support::withHalvedColor(original);
    EXPECT_GT(support::psnr(best, picture), kLeast) << "frame " << i;
    EXPECT_GT(support::psnr(original, picture), support::psnr(original, best) - 1) << "frame " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Over, VideoQuality,
                         testing::Values(render::CanvasBackground::black,
                                         render::CanvasBackground::camera),
                         [](const auto& over) { return std::string(rawValue(over.param)); });

}  // namespace
