#include "platform/portal/portal_camera_permission.h"

#include <string>
#include <string_view>
#include <utility>

#include "platform/portal/application_id.h"
#include "platform/portal/camera_policy.h"
#include "platform/portal/desktop_bus.h"

namespace platform::portal {
namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kCamera = "org.freedesktop.portal.Camera";

constexpr BusMethod kLookUp{"org.freedesktop.impl.portal.PermissionStore",
                            "/org/freedesktop/impl/portal/PermissionStore",
                            "org.freedesktop.impl.portal.PermissionStore", "Lookup"};
constexpr BusMethod kProperty{kPortal, kPortalPath, "org.freedesktop.DBus.Properties", "Get"};
constexpr BusMethod kAccessCamera{kPortal, kPortalPath, kCamera, "AccessCamera"};
constexpr BusMethod kOpenRemote{kPortal, kPortalPath, kCamera, "OpenPipeWireRemote"};

// What the portal says when it does not open the camera, because of a policy or for want of a yes.
constexpr std::string_view kBarred = "Camera access disabled";
constexpr std::string_view kNoYes = "Permission denied";

}  // namespace

PortalCameraPermission::PortalCameraPermission(SerialQueueFactory& queues, MainQueue& mainQueue,
                                               PortalSetting setting)
    : mainQueue_(mainQueue),
      setting_(std::move(setting)),
      bus_(std::make_unique<DesktopBus>(setting_.patience)),
      queue_(queues.make("wavescribe.permission")) {}

PortalCameraPermission::~PortalCameraPermission() {
  bus_->cancel();
}

void PortalCameraPermission::read(std::function<void(CameraAuthorization)> answer) {
  queue_->post([this, answer = std::move(answer)] { tell(answer, lookUp()); });
}

void PortalCameraPermission::request(std::function<void(bool)> answer) {
  queue_->post([this, answer = std::move(answer)] {
    if (const auto granted = ask()) tell(answer, *granted);
  });
}

template <class Value>
void PortalCameraPermission::tell(std::function<void(Value)> answer, Value value) {
  mainQueue_.post([answer = std::move(answer), value, life = std::weak_ptr(life_)] {
    if (!life.expired()) answer(value);
  });
}

// To open the camera asks nobody. The portal checks its policy first, which it does not show
// otherwise, and then for a yes.
CameraAuthorization PortalCameraPermission::lookUp() {
  if (bus_->connect() == BusFailure::silent) return CameraAuthorization::notDetermined;
  if (isCameraDisabledByDesktop()) return CameraAuthorization::restricted;
  const Stored stored = storedAnswer();
  const BusAnswer opened = bus_->call(kOpenRemote, g_variant_new("(a{sv})", nullptr));
  if (opened) return CameraAuthorization::authorized;
  const bool isNotAllowed = opened.failure == BusFailure::notAllowed;
  if (isNotAllowed && opened.message.ends_with(kBarred)) return CameraAuthorization::restricted;
  switch (stored) {
    case Stored::yes:
      if (!isNotAllowed) return CameraAuthorization::authorized;
      // Either it takes us for somebody else, or it words its policy in a new way.
      return opened.message.ends_with(kNoYes) ? CameraAuthorization::notDetermined
                                              : CameraAuthorization::restricted;
    case Stored::no:
      return CameraAuthorization::denied;
    case Stored::nothing:
      break;
  }
  // A portal that is there may answer once the person asks for the camera.
  return opened.failure == BusFailure::absent ? deviceDecides(setting_.devices)
                                              : CameraAuthorization::notDetermined;
}

std::optional<bool> PortalCameraPermission::ask() {
  if (bus_->connect() == BusFailure::silent) return std::nullopt;
  if (isCameraDisabledByDesktop()) return false;
  // Without an interface for the camera there is nobody who could ask the person.
  const BusAnswer version = bus_->call(kProperty, g_variant_new("(ss)", kCamera, "version"));
  if (!version && version.failure == BusFailure::absent) {
    return deviceDecides(setting_.devices) == CameraAuthorization::authorized;
  }
  BusFailure failure = version.failure;
  if (version) {
    const DesktopBus::Response response = bus_->askPerson(kAccessCamera);
    if (response.code) return *response.code == 0;
    failure = response.failure;
  }
  return failure == BusFailure::silent ? std::nullopt : std::optional(false);
}

PortalCameraPermission::Stored PortalCameraPermission::storedAnswer() {
  const BusAnswer answer = bus_->call(kLookUp, g_variant_new("(ss)", "devices", "camera"));
  if (!answer || !g_variant_is_of_type(answer.value.get(), G_VARIANT_TYPE("(a{sas}v)"))) {
    return Stored::nothing;
  }
  const Handle<GVariant> permissions(g_variant_get_child_value(answer.value.get(), 0));
  for (const std::string& id : readApplicationIds(setting_.cgroup)) {
    const Handle<GVariant> ours(
        g_variant_lookup_value(permissions.get(), id.c_str(), G_VARIANT_TYPE_STRING_ARRAY));
    if (!ours || g_variant_n_children(ours.get()) == 0) continue;
    const gchar* word = nullptr;
    g_variant_get_child(ours.get(), 0, "&s", &word);
    return g_str_equal(word, "yes")  ? Stored::yes
           : g_str_equal(word, "no") ? Stored::no
                                     : Stored::nothing;
  }
  return Stored::nothing;
}

}  // namespace platform::portal
