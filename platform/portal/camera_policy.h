#pragma once

#include <filesystem>

#include "platform/camera_permission.h"

namespace platform::portal {

/// Whether the desktop's privacy settings turn the camera off for everybody. Not to be asked while
/// the session's bus hangs.
bool isCameraDisabledByDesktop();

/// What counts where there is no permission service: denied when there are video devices among
/// `devices`, which is /dev, and none of them lets us in, authorised otherwise.
CameraAuthorization deviceDecides(const std::filesystem::path& devices);

}  // namespace platform::portal
