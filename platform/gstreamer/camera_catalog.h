#pragma once

#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/gstreamer/camera.h"
#include "platform/gstreamer/camera_provider.h"
#include "platform/gstreamer/daemon_watch.h"

namespace platform::gstreamer {

/// Knows the cameras that are connected at this moment: those of PipeWire, and the video devices
/// themselves, because PipeWire may be missing or know none. Follows PipeWire's daemon through its
/// end and return; one that hangs counts as missing until it answers. Looks at nothing before the
/// first question. Any thread.
class CameraCatalog {
 public:
  /// The names are GStreamer's, for what provides the cameras of either kind.
  explicit CameraCatalog(const char* pipeWire = "pipewiredeviceprovider",
                         const char* devices = "v4l2deviceprovider");
  ~CameraCatalog();
  CameraCatalog(const CameraCatalog&) = delete;
  CameraCatalog& operator=(const CameraCatalog&) = delete;

  /// PipeWire's first camera; without one the first video device; none when there is neither.
  /// Waits for PipeWire the first time, but not long.
  std::optional<Camera> defaultCamera();

  /// Whether the camera is still connected.
  bool lists(const Camera& camera);

 private:
  using Clock = std::chrono::steady_clock;
  /// For a provider that comes when nobody waits for it any more: it must not be stopped.
  struct Abandon {
    void operator()(CameraProvider* provider) const;
  };
  using NewProvider = std::unique_ptr<CameraProvider, Abandon>;

  void followDaemon();
  void takePipeWire(std::chrono::seconds patience);
  bool daemonLives() const { return daemon_ && daemon_->isAlive(); }

  const char* const pipeWireProvider_;
  const char* const deviceProvider_;

  std::mutex lock_;  // Guards everything below.
  std::optional<DaemonWatch> daemon_;
  std::future<NewProvider> pipeWireToCome_;  // Valid while the daemon has not answered yet.
  std::unique_ptr<CameraProvider> pipeWire_;
  std::optional<Clock::time_point> daemonEnded_;  // When that was noticed.
  std::optional<CameraProvider> devices_;
};

}  // namespace platform::gstreamer
