#pragma once

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/gstreamer/camera.h"
#include "platform/gstreamer/frame_delivery.h"
#include "platform/gstreamer/gst_handle.h"
#include "platform/result.h"

namespace platform::gstreamer {

/// The frames of one camera from the device to BGRA, on the monotonic clock. Behind a slow reader
/// all but the newest are thrown away before they are decoded. Its end closes the camera.
class CameraPipeline {
 public:
  /// Opens the camera and lets go of it again: the reason why it could not be used, if any.
  static Result<void> probe(const Camera& camera);

  /// Starts the frames of `camera` in `format`, which it offers.
  static Result<std::unique_ptr<CameraPipeline>> start(const Camera& camera, const GstCaps* format,
                                                       std::shared_ptr<FrameDelivery> delivery);
  ~CameraPipeline();
  CameraPipeline(const CameraPipeline&) = delete;
  CameraPipeline& operator=(const CameraPipeline&) = delete;

  /// How many frames have left the camera, delivered or not.
  std::uint64_t arrived() const { return arrived_; }

  /// Why the pipeline gave up; none while it has not. A camera that vanishes need not end it.
  std::optional<std::string> failure();

 private:
  explicit CameraPipeline(std::shared_ptr<FrameDelivery> delivery);
  Result<void> build(const Camera& camera, const GstCaps* format);
  void connectSink(GstAppSink* sink);
  void countArrivals(GstElement* source);
  Result<void> play();
  GstFlowReturn takeSample(GstAppSink* sink);
  double captureTime(const GstBuffer* buffer) const;

  Handle<GstElement> pipeline_;
  Handle<GstClock> clock_;
  GstElement* converter_ = nullptr;  // Owned by the pipeline.
  const std::shared_ptr<FrameDelivery> delivery_;

  // Counted by GStreamer's threads at the end of each visit; also what orders their visits after
  // build() and before the end, in a way that does not depend on GStreamer's insides.
  std::atomic<std::uint64_t> arrived_ = 0;
  std::atomic<std::uint64_t> taken_ = 0;
};

}  // namespace platform::gstreamer
