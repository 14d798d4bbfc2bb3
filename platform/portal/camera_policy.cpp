#include "platform/portal/camera_policy.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "platform/portal/handle.h"

namespace platform::portal {
namespace {

// As the user that we act as, unlike access().
bool letsUsIn(const std::filesystem::path& device) {
  return ::faccessat(AT_FDCWD, device.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
}

}  // namespace

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

CameraAuthorization deviceDecides(const std::filesystem::path& devices) {
  std::error_code ignored;
  std::vector<std::filesystem::path> cameras;
  for (const auto& entry : std::filesystem::directory_iterator(devices, ignored)) {
    if (entry.path().filename().string().starts_with("video")) cameras.push_back(entry.path());
  }
  const bool isBarred = !cameras.empty() && std::none_of(cameras.begin(), cameras.end(), letsUsIn);
  return isBarred ? CameraAuthorization::denied : CameraAuthorization::authorized;
}

}  // namespace platform::portal
