#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <future>
#include <memory>
#include <random>
#include <thread>
#include <utility>

#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "tests/platform/ffmpeg/recorded_video.h"
#include "tests/support/temporary_folder.h"

namespace platform::ffmpeg {

/// Writes small videos to a folder of its own.
struct VideoWritingTest : testing::Test {
  support::TemporaryFolder folder;
  std::filesystem::path path = folder / "a video: 1.mp4";
  FfmpegVideoWriterFactory factory;
  std::unique_ptr<VideoWriter> writer;

  void start(const VideoSettings& settings = {64, 48, 30}) {
    writer.reset();
    auto made = factory.make(path);
    ASSERT_TRUE(made.ok());
    writer = std::move(made).value();
    ASSERT_TRUE(writer->addInput(settings));
    ASSERT_TRUE(writer->startWriting());
    writer->startSession(MediaTime{});
  }

  template <class Paint>
  void append(std::int64_t time, Paint paint) {
    while (!writer->isReadyForMoreMediaData() && writer->status() == VideoWriter::Status::writing)
      std::this_thread::yield();
    pixels::Surface frame = writer->takeBuffer().value();
    for (int y = 0; y < frame.height(); ++y) {
      for (int x = 0; x < frame.width(); ++x) paint(frame.view().row(y) + 4 * x, x, y);
    }
    writer->append(std::move(frame), MediaTime{time});
  }
  void appendPlain(std::int64_t time, int blue = 40, int green = 80, int red = 120) {
    append(time, [&](std::uint8_t* pixel, int, int) { set(pixel, blue, green, red); });
  }
  void appendNoise(std::int64_t time) {
    append(time, [&](std::uint8_t* pixel, int, int) {
      set(pixel, random_() & 255, random_() & 255, random_() & 255);
    });
  }

  static void set(std::uint8_t* pixel, unsigned blue, unsigned green, unsigned red) {
    pixel[0] = static_cast<std::uint8_t>(blue);
    pixel[1] = static_cast<std::uint8_t>(green);
    pixel[2] = static_cast<std::uint8_t>(red);
    pixel[3] = 255;
  }

  void finish() {
    std::promise<void> ended;
    writer->markAsFinished();
    writer->finishWriting([&] { ended.set_value(); });
    ended.get_future().wait();
  }

  std::mt19937 random_{5};
};

}  // namespace platform::ffmpeg
