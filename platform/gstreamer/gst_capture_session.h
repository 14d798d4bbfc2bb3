#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include "platform/capture_session.h"
#include "platform/gstreamer/camera.h"
#include "platform/gstreamer/camera_catalog.h"
#include "platform/gstreamer/camera_pipeline.h"
#include "platform/gstreamer/return_watch.h"

namespace platform::gstreamer {

/// A pipeline that is watched by a thread of its own: a camera that vanishes leaves its pipeline
/// silent, and nothing in GStreamer tells when one comes.
class GstCaptureSession final : public CaptureSession {
 public:
  /// `catalog` outlives the session.
  explicit GstCaptureSession(CameraCatalog& catalog);
  ~GstCaptureSession() override;

  void setEvents(CaptureEvents events) override;
  bool canUse(CapturePreset preset, const CaptureInput& input) const override;
  void use(CapturePreset preset) override;
  bool canAddInput(const CaptureInput& input) const override;
  void addInput(std::unique_ptr<CaptureInput> input) override;
  bool canAddOutput() const override;
  void addOutput(SerialQueue& queue, CaptureHandler handler) override;
  bool isRunning() const override;
  void start() override;

 private:
  using Guard = std::unique_lock<std::mutex>;

  Result<void> run();
  void watch(const std::stop_token& stop);
  void look();
  std::optional<std::string> trouble();
  void end(Guard guard, const std::string& why);

  CameraCatalog& catalog_;

  mutable std::mutex lock_;  // Guards everything down to the watch.
  std::optional<CapturePreset> preset_;
  std::optional<Camera> camera_;  // Of the next start, or of the pipeline; none after a stop.
  SerialQueue* queue_ = nullptr;
  CaptureHandler handler_;
  std::shared_ptr<CameraPipeline> pipeline_;  // Present while running.
  bool wasAccepted_ = false;      // A camera has not refused: frames came, or nothing at all.
  std::uint64_t framesSeen_ = 0;  // Of pipeline_, at the last look.
  int looks_ = 0;                 // At pipeline_ since its first frame.
  int silentLooks_ = 0;           // That saw no new frame, in a row.
  ReturnWatch returnWatch_;

  std::mutex eventsLock_;  // Held while an event is told.
  CaptureEvents events_;

  std::jthread watcher_;
};

}  // namespace platform::gstreamer
