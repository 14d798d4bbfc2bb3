#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "capture/callback.h"
#include "pixels/pixel_buffer.h"
#include "platform/capture_session.h"
#include "platform/serial_queue.h"

namespace capture {

/// Opens the default camera once and hands on its frames until the end. There is no stop.
/// The callbacks are set before start(), by the main thread, which may also set them anew later;
/// its end waits for those that are running.
class CameraSource {
 public:
  /// `time`: capture time, seconds on the monotonic clock. Called on "wavescribe.camera.frames".
  using FrameCallback = std::function<void(const pixels::PixelBuffer& frame, double time)>;
  /// Called on "wavescribe.camera.session".
  using ErrorCallback = std::function<void(const std::string& message, const std::string& details)>;
  /// Called on "wavescribe.camera.session".
  using ReturnCallback = std::function<void()>;

  /// Both outlive the source.
  CameraSource(platform::CaptureService& service, platform::SerialQueueFactory& queues);
  ~CameraSource();
  CameraSource(const CameraSource&) = delete;
  CameraSource& operator=(const CameraSource&) = delete;

  void setOnFrame(FrameCallback onFrame) { onFrame_.set(std::move(onFrame)); }
  void setOnError(ErrorCallback onError) { onError_.set(std::move(onError)); }
  /// A camera is there again after "The camera stopped."; start() would use it.
  void setOnReturn(ReturnCallback onReturn) { onReturn_.set(std::move(onReturn)); }

  /// Configures the session unless that has succeeded before, and starts it unless it runs.
  /// Returns at once; failures go to the error callback. Any thread, any number of times.
  void start();

 private:
  void configureAndRun();
  bool configure();
  void watchSession();
  void captureOutput(const std::optional<pixels::PixelBuffer>& sample);

  platform::CaptureService& service_;
  Callback<const pixels::PixelBuffer&, double> onFrame_;
  Callback<const std::string&, const std::string&> onError_;
  Callback<> onReturn_;
  bool configured_ = false;  // Session queue only.

  // The last to come are the first to end: the session queue's work uses the session, and the
  // session posts frames to the output queue.
  std::unique_ptr<platform::SerialQueue> outputQueue_;
  std::unique_ptr<platform::CaptureSession> session_;
  std::unique_ptr<platform::SerialQueue> sessionQueue_;
};

}  // namespace capture
