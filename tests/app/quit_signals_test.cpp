#include "app/quit_signals.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <csignal>

namespace app {
namespace {

TEST(QuitSignals, EndTheEventLoopInsteadOfTheProgram) {
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    QuitSignals quitSignals;
    quitSignals.listen();
    QTimer::singleShot(0, [signal] { std::raise(signal); });

    EXPECT_EQ(QCoreApplication::exec(), 0);
  }
}

}  // namespace
}  // namespace app
