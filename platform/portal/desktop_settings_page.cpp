#include "platform/portal/desktop_settings_page.h"

#include <glib.h>
#include <pthread.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <string_view>

namespace platform::portal {
namespace {

struct Page {
  std::string_view desktop;
  std::array<const char*, 3> command;  ///< Unused places are null.
};

// The first opens whose desktop runs and whose program is installed. KDE has no page for cameras:
// Plasma 6 lists what applications may do under that name, 5.27 does not know it and should open
// its settings at their start. Neither was tried on a KDE desktop.
constexpr std::array kPages{
    Page{"GNOME", {"gnome-control-center", "camera", nullptr}},
    Page{"Unity", {"gnome-control-center", "camera", nullptr}},
    Page{"Budgie", {"budgie-control-center", "camera", nullptr}},
    Page{"KDE", {"systemsettings", "kcm_app-permissions", nullptr}},
    Page{"KDE", {"systemsettings5", nullptr, nullptr}},
};

bool isRunning(std::string_view desktop) {
  const char* names = std::getenv("XDG_CURRENT_DESKTOP");
  std::string_view rest = names ? names : "";
  while (!rest.empty()) {
    const auto end = rest.find(':');
    if (rest.substr(0, end) == desktop) return true;
    rest = end == std::string_view::npos ? "" : rest.substr(end + 1);
  }
  return false;
}

bool isInstalled(const char* program) {
  gchar* path = g_find_program_in_path(program);
  g_free(path);
  return path != nullptr;
}

/// In the new process: it is not to inherit the signals that we have blocked for ourselves.
void unblockSignals(void*) {
  sigset_t none;
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

void DesktopSettingsPage::openCameraPrivacy() {
  for (const Page& page : kPages) {
    if (!isRunning(page.desktop) || !isInstalled(page.command[0])) continue;
    std::array<gchar*, 4> arguments{};
    for (std::size_t i = 0; i < page.command.size(); ++i) {
      arguments[i] = const_cast<gchar*>(page.command[i]);
    }
    g_spawn_async(nullptr, arguments.data(), nullptr, G_SPAWN_SEARCH_PATH, &unblockSignals, nullptr,
                  nullptr, nullptr);
    return;
  }
}

}  // namespace platform::portal
