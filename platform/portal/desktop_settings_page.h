#pragma once

#include "platform/settings_page.h"

namespace platform::portal {

/// The settings of the desktop that runs, as named by XDG_CURRENT_DESKTOP: GNOME's and its
/// relatives', and KDE's. Elsewhere nothing opens.
class DesktopSettingsPage final : public SettingsPage {
 public:
  void openCameraPrivacy() override;
};

}  // namespace platform::portal
