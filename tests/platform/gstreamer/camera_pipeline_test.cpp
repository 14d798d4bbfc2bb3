#include "platform/gstreamer/camera_pipeline.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <string>
#include <thread>

#include "platform/std/thread_queue_factory.h"
#include "platform/std/uptime_clock.h"
#include "tests/platform/gstreamer/test_device.h"
#include "tests/support/colour_bars.h"

namespace platform::gstreamer {
namespace {

class CameraPipelineTest : public testing::Test {
 protected:
  CameraPipelineTest() { gst_init(nullptr, nullptr); }

  Result<std::shared_ptr<CameraPipeline>> start(const std::string& source, const char* format) {
    const Handle<GstCaps> caps(gst_caps_from_string(format));
    auto made =
        CameraPipeline::make(testCamera(source, format), caps.get(),
                             std::make_shared<FrameDelivery>(*queue, [this](const auto& frame) {
                               const std::lock_guard guard(lock);
                               last = frame;
                               ++frames;
                             }));
    if (!made) return made;
    if (const auto playing = made.value()->play(); !playing) return playing.error();
    return made;
  }

  bool framesReach(int count) {
    for (int i = 0; i < 2000 && seen() < count; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return seen() >= count;
  }

  int seen() {
    const std::lock_guard guard(lock);
    return frames;
  }

  void expectBars(const std::string& source, const char* format) {
    const auto pipeline = start(source, format);
    ASSERT_TRUE(pipeline) << pipeline.error().description;
    ASSERT_TRUE(framesReach(3)) << pipeline.value()->failure().value_or("silent");
    const std::lock_guard guard(lock);
    EXPECT_EQ(last->width(), 640);
    EXPECT_EQ(last->height(), 480);
    support::expectColourBars(*last->image);
  }

  std::mutex lock;
  std::optional<pixels::PixelBuffer> last;
  int frames = 0;
  ThreadQueueFactory queues;
  std::unique_ptr<SerialQueue> queue = queues.make("frames");
};

constexpr const char* kBars = "videotestsrc is-live=true pattern=smpte";

TEST_F(CameraPipelineTest, ReadsInterleavedPictures) {
  expectBars(kBars, "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1");
}

TEST_F(CameraPipelineTest, ReadsPlanarPictures) {
  expectBars(kBars, "video/x-raw,format=NV12,width=640,height=480,framerate=30/1");
}

TEST_F(CameraPipelineTest, ReadsJpegPictures) {
  expectBars(std::string(kBars) + " ! video/x-raw,format=I420 ! jpegenc quality=95",
             "image/jpeg,width=640,height=480,framerate=30/1");
}

TEST_F(CameraPipelineTest, ReadsPicturesThatNeedNoConversion) {
  expectBars(kBars, "video/x-raw,format=BGRA,width=640,height=480,framerate=30/1");
}

TEST_F(CameraPipelineTest, APictureOutlivesItsPipeline) {
  auto pipeline = start(kBars, "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1");
  ASSERT_TRUE(framesReach(3));

  std::move(pipeline).value().reset();

  support::expectColourBars(*last->image);
}

TEST_F(CameraPipelineTest, AFrameCarriesTheMomentItWasTaken) {
  const double before = UptimeClock().now();
  const auto pipeline = start(kBars, "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1");
  ASSERT_TRUE(framesReach(10));
  const std::lock_guard guard(lock);

  EXPECT_GT(last->time, before);
  EXPECT_LE(last->time, UptimeClock().now());
  EXPECT_GT(last->time, UptimeClock().now() - 0.5);
}

TEST_F(CameraPipelineTest, TellsWhyItGaveUp) {
  const auto pipeline = start(std::string(kBars) + " num-buffers=3",
                              "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1");
  ASSERT_TRUE(framesReach(3));

  std::optional<std::string> failure;
  for (int i = 0; i < 400 && !failure; ++i) {
    failure = pipeline.value()->failure();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  EXPECT_EQ(failure, "The camera ended its stream.");
}

TEST_F(CameraPipelineTest, AMissingPlugInIsAFailure) {
  const auto pipeline = start("nosuchelement", "video/x-raw,width=640,height=480");

  ASSERT_FALSE(pipeline);
  EXPECT_EQ(pipeline.error().description,
            "A GStreamer plug-in for this kind of camera is missing.");
}

TEST_F(CameraPipelineTest, CountsFramesWhileTheReaderIsStuck) {
  const auto pipeline = start(kBars, "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1");
  ASSERT_TRUE(framesReach(1));
  const std::lock_guard guard(lock);
  const auto before = pipeline.value()->arrived();

  for (int i = 0; i < 2000 && pipeline.value()->arrived() < before + 10; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  EXPECT_GE(pipeline.value()->arrived(), before + 10);
}

}  // namespace
}  // namespace platform::gstreamer
