#include "platform/qt/activation.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <initializer_list>
#include <memory>

namespace platform::qt {
namespace {

// Without a screen no other program takes the keyboard, so the test says what Qt says then.
void say(std::initializer_list<Qt::ApplicationState> states) {
  for (const Qt::ApplicationState state : states) Q_EMIT qGuiApp->applicationStateChanged(state);
}

TEST(Activation, IsToldEachTimeTheProgramBecomesActive) {
  Activation activation;
  int times = 0;
  activation.setOnBecameActive([&] { ++times; });

  say({Qt::ApplicationActive});
  EXPECT_EQ(times, 1);

  say({Qt::ApplicationInactive, Qt::ApplicationActive});
  EXPECT_EQ(times, 2);
}

TEST(Activation, IsNotToldOfAnyOtherChange) {
  Activation activation;
  int times = 0;
  activation.setOnBecameActive([&] { ++times; });

  say({Qt::ApplicationInactive, Qt::ApplicationHidden, Qt::ApplicationSuspended});

  EXPECT_EQ(times, 0);
}

TEST(Activation, TellsTheLatestHandlerOnly) {
  Activation activation;
  say({Qt::ApplicationActive});
  int before = 0;
  int after = 0;
  activation.setOnBecameActive([&] { ++before; });
  activation.setOnBecameActive([&] { ++after; });

  say({Qt::ApplicationActive});

  EXPECT_EQ(before, 0);
  EXPECT_EQ(after, 1);
}

TEST(Activation, TellsNobodyAfterItsEnd) {
  int times = 0;
  auto activation = std::make_unique<Activation>();
  activation->setOnBecameActive([&] { ++times; });

  activation.reset();
  say({Qt::ApplicationActive});

  EXPECT_EQ(times, 0);
}

}  // namespace
}  // namespace platform::qt
