#pragma once

namespace platform {

/// Opens pages of the desktop's settings. Main thread only.
class SettingsPage {
 public:
  virtual ~SettingsPage() = default;
  /// Shows where the person can allow the camera; does nothing on a desktop without such a page.
  virtual void openCameraPrivacy() = 0;
};

}  // namespace platform
