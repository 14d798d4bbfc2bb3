#include "platform/portal/portal_camera_permission.h"

#include <string>
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

}  // namespace

PortalCameraPermission::PortalCameraPermission(SerialQueueFactory& queues, MainQueue& mainQueue,
                                               PortalSetting setting)
    : mainQueue_(mainQueue),
      setting_(std::move(setting)),
      bus_(std::make_unique<DesktopBus>()),
      queue_(queues.make("wavescribe.permission")) {}

PortalCameraPermission::~PortalCameraPermission() {
  bus_->cancel();
}

void PortalCameraPermission::read(std::function<void(CameraAuthorization)> answer) {
  queue_->post([this, answer = std::move(answer)] { tell(answer, lookUp()); });
}

void PortalCameraPermission::request(std::function<void(bool)> answer) {
  queue_->post([this, answer = std::move(answer)] { tell(answer, ask()); });
}

template <class Value>
void PortalCameraPermission::tell(std::function<void(Value)> answer, Value value) {
  mainQueue_.post([answer = std::move(answer), value, life = std::weak_ptr(life_)] {
    if (!life.expired()) answer(value);
  });
}

CameraAuthorization PortalCameraPermission::lookUp() {
  if (isForbidden_ || isCameraDisabledByDesktop()) return CameraAuthorization::restricted;
  switch (storedAnswer()) {
    case Stored::yes:
      return CameraAuthorization::authorized;
    case Stored::no:
      return CameraAuthorization::denied;
    case Stored::nothing:
      break;
  }
  // A portal that is silent may answer once the person asks for the camera.
  return cameraService() == Service::absent ? deviceDecides() : CameraAuthorization::notDetermined;
}

bool PortalCameraPermission::ask() {
  if (isCameraDisabledByDesktop()) return false;
  switch (cameraService()) {
    case Service::absent:
      return deviceDecides() == CameraAuthorization::authorized;
    case Service::silent:
      return false;
    case Service::present:
      break;
  }
  const DesktopBus::Response response = bus_->askPerson(kAccessCamera);
  isForbidden_ = !response.code && response.failure == BusFailure::notAllowed;
  return response.code == 0u;
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

PortalCameraPermission::Service PortalCameraPermission::cameraService() {
  const BusAnswer version = bus_->call(kProperty, g_variant_new("(ss)", kCamera, "version"));
  if (version) return Service::present;
  return version.failure == BusFailure::silent ? Service::silent : Service::absent;
}

}  // namespace platform::portal
