#pragma once

#include "platform/settings_page.h"

namespace support {

/// Counts what it was asked to open.
class FakeSettingsPage final : public platform::SettingsPage {
 public:
  int cameraPrivacyOpened = 0;
  void openCameraPrivacy() override { ++cameraPrivacyOpened; }
};

}  // namespace support
