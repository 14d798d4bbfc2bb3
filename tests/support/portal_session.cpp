#include "tests/support/portal_session.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <vector>

#include "platform/portal/desktop_bus.h"
#include "tests/support/access_backend.h"

namespace support {
namespace {

using platform::portal::BusMethod;
using platform::portal::DesktopBus;

constexpr const char* kPortal = "/usr/libexec/xdg-desktop-portal";
constexpr const char* kStore = "/usr/libexec/xdg-permission-store";
constexpr const char* kPortalName = "org.freedesktop.portal.Desktop";
constexpr const char* kStoreName = "org.freedesktop.impl.portal.PermissionStore";

constexpr BusMethod kHasOwner{"org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "NameHasOwner"};
constexpr BusMethod kSetPermission{kStoreName, "/org/freedesktop/impl/portal/PermissionStore",
                                   kStoreName, "SetPermission"};

bool isOnTheBus(DesktopBus& bus, const char* name) {
  const auto answer = bus.call(kHasOwner, g_variant_new("(s)", name));
  gboolean hasOwner = FALSE;
  if (answer) g_variant_get(answer.value.get(), "(b)", &hasOwner);
  return hasOwner;
}

void waitFor(const char* name) {
  DesktopBus bus;
  for (int i = 0; i < 1000 && !isOnTheBus(bus, name); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace

std::optional<std::string> PortalSession::missing() {
  for (const char* program : {kPortal, kStore}) {
    if (!std::filesystem::exists(program)) return std::string(program) + " is not installed";
  }
  if (!ChildProcess::isInstalled("dbus-daemon")) return "dbus-daemon is not installed";
  return std::nullopt;
}

PortalSession::PortalSession(const std::string& busRules) : desktop_(BusActivation::off, busRules) {
  setenv("XDG_CURRENT_DESKTOP", "test", 1);
  setenv("XDG_DESKTOP_PORTAL_DIR", files_.path().c_str(), 1);
  startServices();
}

PortalSession::~PortalSession() = default;

void PortalSession::killBus() {
  portal_.reset();
  store_.reset();
  desktop_.killBus();
}

void PortalSession::startBus() {
  desktop_.startBus();
  startServices();
}

void PortalSession::startServices() {
  backend_ = std::make_unique<AccessBackend>();
  store_.emplace(std::vector<std::string>{kStore});
  waitFor(kStoreName);
}

void PortalSession::startPortal() {
  std::ofstream(files_ / "test.portal")
      << "[portal]\nDBusName=" << AccessBackend::kName
      << "\nInterfaces=org.freedesktop.impl.portal.Access;org.freedesktop.impl.portal.Lockdown;\n"
         "UseIn=test\n";
  start();
}

void PortalSession::startPortalThatCannotAsk() {
  std::filesystem::remove(files_ / "test.portal");
  start();
}

std::optional<std::string> PortalSession::cannotBeDeceived() {
  if (std::system("unshare --mount true 2>/dev/null") == 0) return std::nullopt;
  return "this user may not mount files";
}

void PortalSession::deceivePortal(const std::string& unit) {
  const std::string path = "/user.slice/user-1.slice/user@1.service/app.slice/" + unit + "\n";
  std::ofstream(cgroup()) << "1:name=systemd:" << path << "0::" << path;
  deceives_ = true;
}

void PortalSession::store(const std::string& applicationId, const std::string& answer) {
  const char* const answers[] = {answer.c_str(), nullptr};
  DesktopBus().call(kSetPermission, g_variant_new("(sbss^as)", "devices", TRUE, "camera",
                                                  applicationId.c_str(), answers));
}

void PortalSession::start() {
  portal_.reset();
  std::vector<std::string> command{kPortal};
  if (deceives_) {
    // In a view of the files that only the portal has.
    command = {"unshare",
               "--mount",
               "sh",
               "-c",
               "mount --bind \"$1\" \"$2\" && exec \"$3\"",
               "sh",
               cgroup().string(),
               "/proc/" + std::to_string(getpid()) + "/cgroup",
               kPortal};
  }
  portal_.emplace(command);
  waitFor(kPortalName);
}

}  // namespace support
