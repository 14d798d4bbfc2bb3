// From the camera to the pixels of a video file.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <thread>

#include "model/app_model.h"
#include "pixels/surface.h"
#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "strokes/palette.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/fake_platform.h"
#include "tests/support/scoped_disk_limit.h"
#include "tests/support/temporary_folder.h"

namespace {

using support::RecordedVideo;
using testing::SizeIs;
using Color = std::array<int, 3>;  // Blue, green, red.

constexpr int kWidth = 640;
constexpr int kHeight = 360;

constexpr Color kRed{0, 0, 255};
constexpr Color kGreen{0, 255, 0};
constexpr Color kBlue{255, 0, 0};
constexpr Color kWhite{255, 255, 255};

/// Red and green above, blue and white below, from left to right.
pixels::PixelBuffer quarters(double time) {
  pixels::Surface picture(kWidth, kHeight);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const bool isLeft = x < kWidth / 2;
      const Color& color = y < kHeight / 2 ? (isLeft ? kRed : kGreen) : (isLeft ? kBlue : kWhite);
      std::uint8_t* pixel = picture.view().row(y) + 4 * x;
      for (int i = 0; i < 3; ++i) pixel[i] = static_cast<std::uint8_t>(color[i]);
    }
  }
  return {.image = pixels::Image::copyOf(picture.row(0), kWidth, kHeight, picture.strideBytes()),
          .time = time};
}

class RecordedCamera : public testing::Test {
 protected:
  RecordedCamera() {
    model.refreshPermission();
    machine.cameraPermission.answerRead(platform::CameraAuthorization::authorized);
    machine.serialQueues.drain("wavescribe.camera.session");
    machine.capture.deliver(quarters(machine.clock.now()));
    machine.serialQueues.drain("wavescribe.camera.frames");
    machine.mainQueue.drain();
  }

  RecordedVideo recordOneFrame() {
    const std::filesystem::path path = folder / "a.mp4";
    machine.savePanel.willAnswer(path);
    model.toggleRecording();
    machine.clock.advance(0.05);
    machine.timers.fire();
    model.toggleRecording();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (model.isFinishingRecording() && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::yield();
      machine.mainQueue.drain();
    }
    return support::readVideo(path);
  }

  support::TemporaryFolder folder;
  support::FakePlatform machine;
  platform::ffmpeg::FfmpegVideoWriterFactory writers;
  model::AppModel model{machine.services(machine.savePanel, writers)};
};

/// `color` at `light` (0 to 1) is seen at these shares of the picture's width and height.
void expectColor(const RecordedVideo& video, double x, double y, const Color& color, double light) {
  const pixels::Surface& picture = video.frames.at(0).picture;
  const std::uint8_t* pixel = picture.row(static_cast<int>(y * picture.height())) +
                              4 * static_cast<int>(x * picture.width());
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(pixel[i], light * color[i], 4) << x << ", " << y;
}

TEST_F(RecordedCamera, IsInTheVideoMirroredAndUprightAndDimmedInItsColours) {
  const double light = 1 - model.dim();

  const RecordedVideo video = recordOneFrame();

  ASSERT_THAT(video.frames, SizeIs(1));
  EXPECT_EQ(video.width, 1280);
  EXPECT_EQ(video.height, 720);
  expectColor(video, 0.25, 0.25, kGreen, light);
  expectColor(video, 0.75, 0.25, kRed, light);
  expectColor(video, 0.25, 0.75, kWhite, light);
  expectColor(video, 0.75, 0.75, kBlue, light);
}

TEST_F(RecordedCamera, StopsOnAFullDiskAndSaysWhyAndWhatWasWrittenPlays) {
  const std::filesystem::path path = folder / "a.mp4";
  machine.savePanel.willAnswer(path);
  const support::ScopedDiskLimit full(20'000);
  model.toggleRecording();
  ASSERT_TRUE(model.isRecording());

  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (model.isRecording() && std::chrono::steady_clock::now() < deadline) {
    machine.clock.advance(1.0 / 30);
    machine.timers.fire();
  }

  EXPECT_EQ(model.errorMessage(), "Recording stopped because of an error.");
  EXPECT_THAT(model.errorDetails().value_or(""), testing::EndsWith("File too large"));
  const RecordedVideo video = support::readVideo(path);
  EXPECT_EQ(video.error, "");
  EXPECT_THAT(video.frames, testing::Not(testing::IsEmpty()));
}

TEST_F(RecordedCamera, LiesUnderTheStrokes) {
  model.setGlow(false);
  model.mouseDown(0.25, 0.25);
  model.mouseUp();
  const strokes::PaletteColor& pen = strokes::Palette::colorAt(model.colorIndex());

  const RecordedVideo video = recordOneFrame();

  ASSERT_THAT(video.frames, SizeIs(1));
  expectColor(
      video, 0.25, 0.25,
      {static_cast<int>(255 * pen.b), static_cast<int>(255 * pen.g), static_cast<int>(255 * pen.r)},
      1);
}

}  // namespace
