#include "platform/qt/timer_factory.h"

#include <QElapsedTimer>
#include <QMenu>
#include <QTimer>

#include "tests/support/widgets.h"

namespace platform::qt {
namespace {

constexpr double kFrame = 1.0 / 30.0;

TEST(TimerFactory, ATimerFiresAtItsAverageRateAlthoughAFrameIsNoWholeMillisecond) {
  TimerFactory factory;
  QElapsedTimer clock;
  int fired = 0;
  double lastMs = 0;

  clock.start();
  const auto timer = factory.repeat(kFrame, [&] {
    ++fired;
    lastMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
  });
  ASSERT_TRUE(QTest::qWaitFor([&] { return lastMs > 1000; }, 20000));

  // Never ahead of the time line; how far behind is up to the machine.
  EXPECT_LE(fired, lastMs / 1000 / kFrame + 1);
  EXPECT_GE(fired, 5);
}

TEST(TimerFactory, DestroyingATimerStopsIt) {
  TimerFactory factory;
  int fired = 0;
  auto timer = factory.repeat(0.001, [&] { ++fired; });
  ASSERT_TRUE(QTest::qWaitFor([&] { return fired > 0; }));

  timer.reset();
  const int before = fired;
  QTest::qWait(20);

  EXPECT_EQ(fired, before);
}

TEST(TimerFactory, ATimerMayBeDestroyedByItsOwnFiring) {
  TimerFactory factory;
  int fired = 0;
  std::unique_ptr<RepeatingTimer> timer;
  timer = factory.repeat(0.001, [&] {
    ++fired;
    timer.reset();
  });

  ASSERT_TRUE(QTest::qWaitFor([&] { return fired > 0; }));
  QTest::qWait(20);

  EXPECT_EQ(fired, 1);
}

TEST(TimerFactory, ATimerFiresWhileAMenuIsOpen) {
  TimerFactory factory;
  QMenu menu;
  menu.addAction("Item");
  int fired = 0;
  const auto timer = factory.repeat(0.001, [&] {
    if (menu.isVisible() && ++fired == 3) menu.close();
  });
  QTimer::singleShot(20000, &menu, &QMenu::close);

  menu.exec();

  EXPECT_GE(fired, 3);
}

TEST(TimerFactory, FiringsThatWereMissedAreNotMadeUp) {
  TimerFactory factory;
  int fired = 0;
  const auto timer = factory.repeat(0.01, [&] { ++fired; });

  QTest::qSleep(300);
  support::settle();

  EXPECT_LE(fired, 2);
}

}  // namespace
}  // namespace platform::qt
