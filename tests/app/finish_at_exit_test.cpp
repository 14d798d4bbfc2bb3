#include "app/finish_at_exit.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace app {
namespace {

void finish() {
  std::fputs("finished", stderr);
}

TEST(FinishAtExitDeathTest, AnExitInTheMiddleFinishes) {
  EXPECT_EXIT(
      {
        const FinishAtExit finishing(finish);
        std::exit(1);
      },
      testing::ExitedWithCode(1), "^finished$");
}

TEST(FinishAtExitDeathTest, AnExitAfterItsEndDoesNot) {
  EXPECT_EXIT(
      {
        std::optional<FinishAtExit> finishing(std::in_place, finish);
        finishing.reset();
        std::exit(1);
      },
      testing::ExitedWithCode(1), "^$");
}

}  // namespace
}  // namespace app
