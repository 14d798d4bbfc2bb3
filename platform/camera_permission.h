#pragma once

#include <functional>

namespace platform {

/// What the machine says about us and the camera.
enum class CameraAuthorization {
  notDetermined,  ///< The person has not been asked.
  restricted,     ///< A policy of the machine bars it, and asking would not help.
  denied,         ///< The person refused.
  authorized,
  unknown,  ///< An answer that none of the others covers.
};

/// The person's permission to use the camera. Called on the main thread; answers arrive there too,
/// once each, later or within the call. Answers that are still due at its end never come.
class CameraPermission {
 public:
  virtual ~CameraPermission() = default;
  /// Looks the permission up, without asking the person.
  virtual void read(std::function<void(CameraAuthorization)> answer) = 0;
  /// Asks the person, unless the answer is known already. May take minutes. No answer comes when
  /// whoever should ask the person does not; it can be requested again then.
  virtual void request(std::function<void(bool granted)> answer) = 0;
};

}  // namespace platform
