#pragma once

#include <string>
#include <utility>

namespace model {

/// Where the camera stands.
struct CameraState {
  enum class Kind {
    failed,           ///< It could not be used; `message` says why.
    checking,         ///< Before the first look at the permission.
    needsPermission,  ///< The person has not been asked yet.
    denied,           ///< The person refused.
    restricted,       ///< Barred by the system's policy.
    running,
    mouseOnly,  ///< The person chose to paint without a camera.
  };

  Kind kind = Kind::checking;
  std::string message;  ///< Only in `failed`.

  static CameraState failed(std::string why) { return {Kind::failed, std::move(why)}; }

  friend bool operator==(const CameraState&, const CameraState&) = default;
};

}  // namespace model
