#include "platform/portal/application_id.h"

#include <gmock/gmock.h>

namespace platform::portal {
namespace {

using testing::ElementsAre;

constexpr const char* kOurs = "io.github.wavescribe.Wavescribe";
constexpr const char* kManager = "/user.slice/user-1000.slice/user@1000.service/";

std::vector<std::string> inUnit(const std::string& unit) {
  return applicationIds(std::string("0::") + kManager + "app.slice/" + unit + "\n");
}

TEST(ApplicationId, IsEmptyInATerminal) {
  EXPECT_THAT(applicationIds("0::/user.slice/user-1000.slice/session-2.scope\n"), ElementsAre(""));
  EXPECT_THAT(inUnit("vte-spawn-0a1b.scope"), ElementsAre(""));
  EXPECT_THAT(applicationIds("0::/\n"), ElementsAre(""));
  EXPECT_THAT(applicationIds(""), ElementsAre(""));
}

TEST(ApplicationId, IsTheNameThatTheLauncherGaveTheScope) {
  EXPECT_THAT(inUnit("app-gnome-io.github.wavescribe.Wavescribe-1234.scope"), ElementsAre(kOurs));
  EXPECT_THAT(inUnit("app-io.github.wavescribe.Wavescribe-1234.scope"), ElementsAre(kOurs));
  EXPECT_THAT(inUnit("app-io.github.wavescribe.Wavescribe.scope"), ElementsAre(kOurs));
}

TEST(ApplicationId, IsTheNameOfAServiceToo) {
  EXPECT_THAT(inUnit("app-io.github.wavescribe.Wavescribe@0a1b.service"), ElementsAre(kOurs));
  EXPECT_THAT(inUnit("app-KDE-io.github.wavescribe.Wavescribe-77.service"), ElementsAre(kOurs));
  EXPECT_THAT(inUnit("app-io.github.wavescribe.Wavescribe.service"), ElementsAre(kOurs));
}

TEST(ApplicationId, IsTheSameWhenTheSessionStartsTheProgram) {
  EXPECT_THAT(inUnit("app-io.github.wavescribe.Wavescribe@autostart.service"), ElementsAre(kOurs));
  EXPECT_THAT(inUnit("app-io.github.wavescribe.Wavescribe-autostart.service"), ElementsAre(kOurs));
  EXPECT_THAT(inUnit("app-gnome-io.github.wavescribe.Wavescribe-12-autostart.service"),
              ElementsAre(kOurs));
}

TEST(ApplicationId, KeepsAHyphenThatTheLauncherEscaped) {
  EXPECT_THAT(inUnit(R"(app-gnome-org.example.some\x2dprogram-77.scope)"),
              ElementsAre("org.example.some-program"));
}

TEST(ApplicationId, WithFewerThanTwoDotsCountsForSomePortalsOnly) {
  EXPECT_THAT(inUnit(R"(app-gnome-some\x2dprogram-77.scope)"), ElementsAre("some-program", ""));
  EXPECT_THAT(inUnit("app-example.program-77.scope"), ElementsAre("example.program", ""));
}

TEST(ApplicationId, IsThatOfTheFirstUnitBelowTheManagersSlices) {
  EXPECT_THAT(
      inUnit("app-org.example.slice/app-org.example.one-1.scope/app-org.example.two-2.scope"),
      ElementsAre("org.example.one"));
  EXPECT_THAT(inUnit("app-org.example.one-1.slice"), ElementsAre(""));
  EXPECT_THAT(applicationIds("0::/system.slice/app-org.example.one-1.scope\n"), ElementsAre(""));
}

TEST(ApplicationId, IsFoundAmongTheOlderControlGroups) {
  EXPECT_THAT(applicationIds(std::string("8:pids:") + kManager + "\n1:name=systemd:" + kManager +
                             "app.slice/app-gnome-io.github.wavescribe.Wavescribe-1.scope\n0::/\n"),
              ElementsAre(kOurs));
}

}  // namespace
}  // namespace platform::portal
