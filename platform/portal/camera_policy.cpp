#include "platform/portal/camera_policy.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "platform/portal/desktop_bus.h"

namespace platform::portal {

bool isCameraDisabledByDesktop() {
  // Asking for settings of a schema that is not installed would end the process.
  GSettingsSchemaSource* source = g_settings_schema_source_get_default();
  if (!source) return false;
  const Handle<GSettingsSchema> schema(
      g_settings_schema_source_lookup(source, "org.gnome.desktop.privacy", TRUE));
  if (!schema || !g_settings_schema_has_key(schema.get(), "disable-camera")) return false;
  const Handle<GSettings> settings(g_settings_new_full(schema.get(), nullptr, nullptr));
  return g_settings_get_boolean(settings.get(), "disable-camera");
}

CameraAuthorization deviceDecides() {
  std::error_code ignored;
  std::vector<std::filesystem::path> devices;
  for (const auto& entry : std::filesystem::directory_iterator("/dev", ignored)) {
    if (entry.path().filename().string().starts_with("video")) devices.push_back(entry.path());
  }
  const bool barred =
      !devices.empty() && std::none_of(devices.begin(), devices.end(), [](const auto& device) {
        return ::access(device.c_str(), R_OK | W_OK) == 0;
      });
  return barred ? CameraAuthorization::denied : CameraAuthorization::authorized;
}

}  // namespace platform::portal
