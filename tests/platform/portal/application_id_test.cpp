#include "platform/portal/application_id.h"

#include <gtest/gtest.h>

namespace platform::portal {
namespace {

constexpr const char* kSlice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";

std::string inScope(const std::string& scope) {
  return applicationId(std::string_view(kSlice + scope + "\n"));
}

TEST(ApplicationId, IsEmptyInATerminal) {
  EXPECT_EQ(applicationId(std::string_view("0::/user.slice/user-1000.slice/session-2.scope\n")),
            "");
  EXPECT_EQ(applicationId(std::string_view("")), "");
}

TEST(ApplicationId, IsTheNameThatTheLauncherGaveTheScope) {
  EXPECT_EQ(inScope("app-gnome-io.github.wavescribe.Wavescribe-1234.scope"),
            "io.github.wavescribe.Wavescribe");
  EXPECT_EQ(inScope("app-io.github.wavescribe.Wavescribe-1234.scope"),
            "io.github.wavescribe.Wavescribe");
}

TEST(ApplicationId, KeepsAHyphenThatTheLauncherEscaped) {
  EXPECT_EQ(inScope(R"(app-gnome-some\x2dprogram-77.scope)"), "some-program");
}

}  // namespace
}  // namespace platform::portal
