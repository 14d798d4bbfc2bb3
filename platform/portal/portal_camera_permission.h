#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

#include "platform/camera_permission.h"
#include "platform/main_queue.h"
#include "platform/serial_queue.h"

namespace platform::portal {

class DesktopBus;

/// What the permission depends on besides the session's D-Bus.
struct PortalSetting {
  std::filesystem::path cgroup = "/proc/self/cgroup";  ///< Tells the name a launcher gave us.
  std::filesystem::path devices = "/dev";              ///< Where the video devices are.
  std::chrono::milliseconds patience{3000};            ///< With a service that does not answer.
};

/// The permission that the desktop's portal keeps for us. Asks it on a queue of its own, so that a
/// service which hangs delays only the answer.
class PortalCameraPermission final : public CameraPermission {
 public:
  /// `queues` and `mainQueue` outlive this.
  PortalCameraPermission(SerialQueueFactory& queues, MainQueue& mainQueue,
                         PortalSetting setting = {});
  ~PortalCameraPermission() override;

  void read(std::function<void(CameraAuthorization)> answer) override;
  void request(std::function<void(bool granted)> answer) override;

 private:
  enum class Stored { yes, no, nothing };

  CameraAuthorization lookUp();
  std::optional<bool> ask();
  Stored storedAnswer();
  template <class Value>
  void tell(std::function<void(Value)> answer, Value value);

  MainQueue& mainQueue_;
  const PortalSetting setting_;
  const std::unique_ptr<DesktopBus> bus_;  // Of the queue, but for its cancelling.
  std::shared_ptr<const char> life_ = std::make_shared<const char>();
  std::unique_ptr<SerialQueue> queue_;
};

}  // namespace platform::portal
