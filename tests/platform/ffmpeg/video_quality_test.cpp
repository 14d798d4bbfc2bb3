#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "render/canvas_renderer.h"
#include "tests/platform/ffmpeg/painted_scene.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kFrames = 8;

pixels::Surface painted(int frame) {
  pixels::Surface picture(kWidth, kHeight);
  render::CanvasRenderer::render(support::paintedScene(frame), {picture.view()}, {kWidth, kHeight});
  return picture;
}

TEST(VideoQuality, ThinGlowingLinesStayClean) {
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
    ASSERT_TRUE(writer->append(painted(i), {20 * (i + 1)}));
  }
  std::promise<void> finished;
  writer->finishWriting([&] { finished.set_value(); });
  finished.get_future().wait();

  const support::RecordedVideo video = support::readVideo(folder / "a.mp4");

  ASSERT_EQ(video.frames.size(), static_cast<std::size_t>(kFrames));
  for (int i = 0; i < kFrames; ++i) {
    const pixels::Surface original = painted(i);
    const pixels::Surface& seen = video.frames[i].picture;
    const pixels::Surface best = support::withHalvedColor(original);
    EXPECT_GT(support::psnr(best, seen), 42) << "frame " << i;
    // The format's halved colour costs thin lines more than all compression does.
    EXPECT_GT(support::psnr(original, seen), support::psnr(original, best) - 1) << "frame " << i;
  }
}

}  // namespace
