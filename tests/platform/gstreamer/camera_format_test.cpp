#include "platform/gstreamer/camera_format.h"

#include <gtest/gtest.h>

#include <string>

namespace platform::gstreamer {
namespace {

// What webcams say about themselves, in GStreamer's own notation.
constexpr const char* kUsbWebcam =
    "video/x-raw, format=YUY2, width=1280, height=720, framerate=10/1;"
    "video/x-raw, format=YUY2, width=640, height=480, framerate={30/1, 15/1};"
    "image/jpeg, width=1280, height=720, framerate={30/1, 15/1};"
    "image/jpeg, width=1920, height=1080, framerate=30/1";

class CameraFormatTest : public testing::Test {
 protected:
  CameraFormatTest() { gst_init(nullptr, nullptr); }

  static Handle<GstCaps> caps(const char* text) {
    return Handle<GstCaps>(gst_caps_from_string(text));
  }
  static std::string chosen(const char* offered, bool highDefinition) {
    const auto format = CameraFormat::choose(caps(offered).get(), highDefinition);
    if (!format) return "nothing";
    const Handle<gchar> text(gst_caps_to_string(format.get()));
    return text.get();
  }
};

TEST_F(CameraFormatTest, PrefersJpegInHighDefinitionWhenRawPicturesWouldCrawl) {
  EXPECT_EQ(chosen(kUsbWebcam, true),
            "image/jpeg, width=(int)1280, height=(int)720, framerate=(fraction)30/1");
}

TEST_F(CameraFormatTest, PrefersRawPicturesAtTheSameRate) {
  EXPECT_EQ(chosen("image/jpeg, width=1280, height=720, framerate=30/1;"
                   "video/x-raw, format=NV12, width=1280, height=720, framerate=30/1",
                   true),
            "video/x-raw, format=(string)NV12, width=(int)1280, height=(int)720, "
            "framerate=(fraction)30/1");
}

TEST_F(CameraFormatTest, FindsTheSizeInsideARange) {
  EXPECT_EQ(chosen("video/x-raw, format=YUY2, width=[16, 1920], height=[16, 1080], "
                   "framerate=[1/1, 60/1]",
                   true),
            "video/x-raw, format=(string)YUY2, width=(int)1280, height=(int)720, "
            "framerate=(fraction)30/1");
}

TEST_F(CameraFormatTest, PrefersThirtyPicturesASecondToSixty) {
  EXPECT_EQ(
      chosen("video/x-raw, format=YUY2, width=1280, height=720, framerate={60/1, 30/1}", true),
      "video/x-raw, format=(string)YUY2, width=(int)1280, height=(int)720, "
      "framerate=(fraction)30/1");
}

TEST_F(CameraFormatTest, WithoutHighDefinitionTakesTheFirstReadableEntry) {
  EXPECT_EQ(chosen("video/x-h264, width=1280, height=720;"
                   "video/x-raw, format=YUY2, width=640, height=480, framerate=30/1;"
                   "video/x-raw, format=YUY2, width=1280, height=720, framerate=30/1",
                   false),
            "video/x-raw, format=(string)YUY2, width=(int)640, height=(int)480, "
            "framerate=(fraction)30/1");
}

TEST_F(CameraFormatTest, ChoosesNothingFromACameraThatOnlySpeaksH264) {
  EXPECT_EQ(chosen("video/x-h264, width=1280, height=720", false), "nothing");
  EXPECT_EQ(chosen("video/x-h264, width=1280, height=720", true), "nothing");
}

TEST_F(CameraFormatTest, LeavesPicturesInGraphicsMemoryAlone) {
  EXPECT_EQ(chosen("video/x-raw(memory:DMABuf), format=NV12, width=1280, height=720", true),
            "nothing");
}

TEST_F(CameraFormatTest, OffersASizeOnlyWhereAReadableEntryHasIt) {
  EXPECT_TRUE(CameraFormat::offers(caps(kUsbWebcam).get(), 1280, 720));
  EXPECT_FALSE(CameraFormat::offers(caps(kUsbWebcam).get(), 800, 600));
  EXPECT_FALSE(CameraFormat::offers(caps("video/x-h264, width=1280, height=720").get(), 1280, 720));
}

TEST_F(CameraFormatTest, KnowsJpeg) {
  EXPECT_TRUE(CameraFormat::isJpeg(caps("image/jpeg, width=1280, height=720").get()));
  EXPECT_FALSE(CameraFormat::isJpeg(caps("video/x-raw, format=YUY2").get()));
}

}  // namespace
}  // namespace platform::gstreamer
