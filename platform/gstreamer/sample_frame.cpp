#include "platform/gstreamer/sample_frame.h"

#include <gst/video/video.h>

#include <memory>

namespace platform::gstreamer {
namespace {

// A sample held in memory where its pixels can be read.
class MappedSample {
 public:
  explicit MappedSample(GstSample* sample) {
    GstVideoInfo info;
    GstCaps* caps = gst_sample_get_caps(sample);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    readable_ = caps && buffer && gst_video_info_from_caps(&info, caps) &&
                GST_VIDEO_INFO_FORMAT(&info) == GST_VIDEO_FORMAT_BGRA &&
                gst_video_frame_map(&frame_, &info, buffer, GST_MAP_READ);
  }
  ~MappedSample() {
    if (readable_) gst_video_frame_unmap(&frame_);
  }
  MappedSample(const MappedSample&) = delete;
  MappedSample& operator=(const MappedSample&) = delete;

  bool isReadable() const { return readable_; }
  const std::uint8_t* data() const {
    return static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, 0));
  }
  int width() const { return GST_VIDEO_FRAME_WIDTH(&frame_); }
  int height() const { return GST_VIDEO_FRAME_HEIGHT(&frame_); }
  std::size_t strideBytes() const {
    return static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, 0));
  }

 private:
  GstVideoFrame frame_{};
  bool readable_ = false;
};

}  // namespace

pixels::PixelBuffer frameOf(Handle<GstSample> sample, SampleMemory memory, double time) {
  const auto mapped = std::make_shared<MappedSample>(sample.get());
  if (!mapped->isReadable()) return {.image = std::nullopt, .time = time};
  const int width = mapped->width();
  const int height = mapped->height();
  const std::size_t strideBytes = mapped->strideBytes();
  if (memory == SampleMemory::borrowed) {
    return {.image = pixels::Image::copyOf(mapped->data(), width, height, strideBytes),
            .time = time};
  }
  const std::shared_ptr<const std::uint8_t> data(mapped, mapped->data());
  return {.image = pixels::Image(data, width, height, strideBytes), .time = time};
}

}  // namespace platform::gstreamer
