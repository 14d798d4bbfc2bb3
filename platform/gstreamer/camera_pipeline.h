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
/// all but the newest are thrown away before they are decoded. Its end closes the camera. play()
/// and the end wait for the camera's service or driver, which may hang.
class CameraPipeline {
 public:
  /// Opens the camera and lets go of it again: the reason why it could not be used, if any.
  static Result<void> probe(const Camera& camera);

  /// For frames of `camera` in `format`, which it offers.
  static Result<std::shared_ptr<CameraPipeline>> make(const Camera& camera, const GstCaps* format,
                                                      std::shared_ptr<FrameDelivery> delivery);
  ~CameraPipeline();
  CameraPipeline(const CameraPipeline&) = delete;
  CameraPipeline& operator=(const CameraPipeline&) = delete;

  /// Starts the frames. Once, on any thread.
  Result<void> play();

  /// Delivers no frame any more. Does not wait for the camera.
  void silence() { delivery_->close(); }

  /// Lets a play() that hangs fail, if the source can be spoken to. Any thread.
  void interruptPlay();

  /// How many frames have left the camera, delivered or not.
  std::uint64_t arrived() const { return arrived_; }

  /// Why the pipeline gave up; none while it has not. A camera that vanishes need not end it.
  std::optional<std::string> failure();

 private:
  explicit CameraPipeline(std::shared_ptr<FrameDelivery> delivery);
  Result<void> build(const Camera& camera, const GstCaps* format);
  void connectSink(GstAppSink* sink);
  void countArrivals(GstElement* source);
  GstFlowReturn takeSample(GstAppSink* sink);
  double captureTime(const GstBuffer* buffer) const;

  Handle<GstElement> pipeline_;
  Handle<GstClock> clock_;
  GstElement* source_ = nullptr;     // The pipeline owns it,
  GstElement* converter_ = nullptr;  // and this one.
  const std::shared_ptr<FrameDelivery> delivery_;

  // Counted by GStreamer's threads at the end of each visit; also what orders their visits after
  // build() and before the end, in a way that does not depend on GStreamer's insides.
  std::atomic<std::uint64_t> arrived_ = 0;
  std::atomic<std::uint64_t> taken_ = 0;
};

}  // namespace platform::gstreamer
