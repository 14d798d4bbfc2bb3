#pragma once

#include "platform/camera_permission.h"

namespace platform::portal {

/// Whether the desktop's privacy settings turn the camera off for everybody.
bool isCameraDisabledByDesktop();

/// What counts where there is no permission service: denied when there are video devices and none
/// of them lets us in, authorised otherwise.
CameraAuthorization deviceDecides();

}  // namespace platform::portal
