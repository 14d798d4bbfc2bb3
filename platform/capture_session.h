#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "pixels/pixel_buffer.h"
#include "platform/result.h"
#include "platform/serial_queue.h"

namespace platform {

/// A picture size that a session can be asked for.
enum class CapturePreset { hd1280x720 };

/// A camera that has been opened for us.
class CaptureInput {
 public:
  virtual ~CaptureInput() = default;
};

/// A camera of the machine.
class CaptureDevice {
 public:
  virtual ~CaptureDevice() = default;
  /// The name under which the desktop shows it.
  virtual std::string displayName() const = 0;
  /// Opens it. May take as long as the hardware needs.
  virtual Result<std::unique_ptr<CaptureInput>> open() = 0;
};

/// What a session tells about itself, on any thread. Handlers return quickly.
struct CaptureEvents {
  /// The camera refused to start; the session is not running. It does not try again.
  std::function<void(const std::string& detail)> failedToStart;
  /// The frames of a started camera ended, or none came; the session is not running and waits for
  /// a camera.
  std::function<void(const std::string& detail)> stopped;
  /// After `stopped`: a camera can be used again, and start() would use it.
  std::function<void()> returned;
};

/// Receives what the camera delivers; nothing stands for a sample without picture data.
using CaptureHandler = std::function<void(const std::optional<pixels::PixelBuffer>& sample)>;

/// Carries frames from one camera to one handler. One thread at a time, except where noted.
/// Its end lets go of the camera, and no frame or event comes afterwards.
class CaptureSession {
 public:
  virtual ~CaptureSession() = default;

  /// Replaces what was set before; once it returns, no earlier handler is running.
  virtual void setEvents(CaptureEvents events) = 0;

  /// Whether a camera can deliver that size. Without a preset the camera's own default stands.
  virtual bool canUse(CapturePreset preset, const CaptureInput& input) const = 0;
  virtual void use(CapturePreset preset) = 0;

  virtual bool canAddInput(const CaptureInput& input) const = 0;
  virtual void addInput(std::unique_ptr<CaptureInput> input) = 0;

  virtual bool canAddOutput() const = 0;
  /// Frames are 32-bit BGRA. They reach `handler` on `queue`, one at a time; while it is at work
  /// only the newest waits and older ones are discarded. `queue` outlives the session.
  virtual void addOutput(SerialQueue& queue, CaptureHandler handler) = 0;

  virtual bool isRunning() const = 0;
  /// Starts the frames, after a stop with the default camera of that moment. Whether it worked
  /// shows in the events and in isRunning().
  virtual void start() = 0;
};

/// The cameras of the machine. Any thread.
class CaptureService {
 public:
  virtual ~CaptureService() = default;
  virtual std::unique_ptr<CaptureSession> makeSession() = 0;
  /// The camera that the desktop uses unless told otherwise; null when there is none.
  virtual std::unique_ptr<CaptureDevice> defaultVideoDevice() = 0;
};

}  // namespace platform
