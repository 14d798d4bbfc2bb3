#pragma once

#include <memory>

#include "pixels/pixel_buffer.h"
#include "platform/capture_session.h"

namespace replay {

/// A machine whose one camera shows what it is given. Outlives its sessions; one thread.
class ClipCamera final : public platform::CaptureService {
 public:
  std::unique_ptr<platform::CaptureSession> makeSession() override;
  std::unique_ptr<platform::CaptureDevice> defaultVideoDevice() override;

  /// Hands a frame to the running session, on its queue; without one it is lost.
  void deliver(const pixels::PixelBuffer& frame);

 private:
  class Session;

  Session* running_ = nullptr;
};

}  // namespace replay
