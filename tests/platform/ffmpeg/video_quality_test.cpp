#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <limits>
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
constexpr double kPerfect = std::numeric_limits<double>::infinity();

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

/// Decibels.
struct Quality {
  double y = kPerfect, u = kPerfect, v = kPerfect;  ///< Of the file's planes.
  double brightness = kPerfect;                     ///< That is seen.
  double rgb = kPerfect;
  double bestRgb = kPerfect;  ///< What halved colour alone leaves of `rgb`.
};

Quality qualityOf(const support::RecordedVideo::Frame& seen, const pixels::Surface& original) {
  const support::Planes planes = support::planesOf(original);
  return {support::psnr(planes.y, seen.planes.y),
          support::psnr(planes.u, seen.planes.u),
          support::psnr(planes.v, seen.planes.v),
          support::brightnessPsnr(original, seen.picture),
          support::psnr(original, seen.picture),
          support::psnr(original, support::withHalvedColor(original))};
}

Quality worstOf(const Quality& a, const Quality& b) {
  return {std::min(a.y, b.y),     std::min(a.u, b.u),
          std::min(a.v, b.v),     std::min(a.brightness, b.brightness),
          std::min(a.rgb, b.rgb), std::min(a.bestRgb, b.bestRgb)};
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
  Quality worst;
  for (int i = 0; i < kFrames; ++i)
    worst = worstOf(worst, qualityOf(video.frames[i], painted(i, GetParam())));
  std::printf("decibels at least: y %.1f, u %.1f, v %.1f, brightness seen %.1f, rgb %.1f of %.1f\n",
              worst.y, worst.u, worst.v, worst.brightness, worst.rgb, worst.bestRgb);
  EXPECT_GT(worst.y, kLeast);
  EXPECT_GT(worst.u, kLeast);
  EXPECT_GT(worst.v, kLeast);
  EXPECT_GT(worst.brightness, kLeast);
  // In red, green and blue the format's halved colour costs thin lines more than all compression
  // does: no video of this kind can show them better than this.
  EXPECT_GT(worst.rgb, worst.bestRgb - 1);
}

INSTANTIATE_TEST_SUITE_P(Over, VideoQuality,
                         testing::Values(render::CanvasBackground::black,
                                         render::CanvasBackground::camera),
                         [](const auto& over) { return std::string(rawValue(over.param)); });

}  // namespace
