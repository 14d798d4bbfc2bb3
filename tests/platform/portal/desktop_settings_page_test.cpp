#include "platform/portal/desktop_settings_page.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/support/temporary_folder.h"

namespace platform::portal {
namespace {

/// Programs of a desktop that write down how they were called.
class DesktopSettingsPageTest : public testing::Test {
 protected:
  DesktopSettingsPageTest() {
    for (const char* name : {"gnome-control-center", "systemsettings"}) {
      const auto program = folder.path() / name;
      std::ofstream(program) << "#!/bin/sh\necho \"${0##*/} $*\" > '" << called().string()
                             << "'\ngrep SigBlk /proc/self/status > '" << signals().string()
                             << "'\n";
      std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    setenv("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str(), 1);
  }

  std::filesystem::path called() const { return folder.path() / "called"; }
  std::filesystem::path signals() const { return folder.path() / "signals"; }

  std::string openOn(const char* desktop) {
    setenv("XDG_CURRENT_DESKTOP", desktop, 1);
    DesktopSettingsPage().openCameraPrivacy();
    return firstLineOf(called());
  }

  /// Waits for it, but not for ever.
  static std::string firstLineOf(const std::filesystem::path& path) {
    std::string line;
    for (int i = 0; i < 60 && line.empty(); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      std::ifstream file(path);
      std::getline(file, line);
    }
    return line;
  }

  support::TemporaryFolder folder;
};

TEST_F(DesktopSettingsPageTest, OpensThePageOfTheDesktopThatRuns) {
  EXPECT_EQ(openOn("GNOME"), "gnome-control-center camera");
  std::filesystem::remove(called());
  EXPECT_EQ(openOn("KDE"), "systemsettings kcm_app-permissions");
}

TEST_F(DesktopSettingsPageTest, ThePageEndsWhenTheSystemAsksAlthoughWeDoNotAtOnce) {
  sigset_t ours, before;
  sigemptyset(&ours);
  sigaddset(&ours, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &ours, &before);

  openOn("GNOME");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);

  EXPECT_EQ(firstLineOf(signals()), "SigBlk:\t0000000000000000");
}

TEST_F(DesktopSettingsPageTest, UnderstandsADesktopThatNamesItsRelatives) {
  EXPECT_EQ(openOn("ubuntu:GNOME"), "gnome-control-center camera");
}

TEST_F(DesktopSettingsPageTest, DoesNothingWhereThereIsNoSuchPage) {
  EXPECT_EQ(openOn("XFCE"), "");
  EXPECT_EQ(openOn(""), "");
}

}  // namespace
}  // namespace platform::portal
