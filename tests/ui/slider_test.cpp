#include "ui/slider.h"

#include <gtest/gtest.h>

#include "tests/support/widgets.h"

namespace ui {
namespace {

TEST(Slider, APressOnTheGrooveTakesTheHandleThere) {
  Slider slider(0, 1, 1000);
  slider.resize(200, 24);
  slider.show();
  support::settle();

  QTest::mouseClick(&slider, Qt::LeftButton, {}, {100, 12});

  EXPECT_NEAR(slider.amount(), 0.5, 0.02);
}

TEST(Slider, ADragMovesContinuously) {
  Slider slider(0, 0.9, 1000);
  slider.resize(500, 24);
  slider.show();
  support::settle();
  double chosen = -1;
  QObject::connect(&slider, &Slider::amountChosen, [&](double amount) { chosen = amount; });

  QTest::mousePress(&slider, Qt::LeftButton, {}, {200, 12});
  QTest::mouseMove(&slider, {201, 12});
  const double before = chosen;
  QTest::mouseMove(&slider, {202, 12});

  EXPECT_GT(chosen, before);
  EXPECT_LT(chosen - before, 0.9 / 400);
}

TEST(Slider, ShowingAnAmountIsNoChoice) {
  Slider slider(2, 50, 1000);
  bool isChosen = false;
  QObject::connect(&slider, &Slider::amountChosen, [&] { isChosen = true; });

  slider.setAmount(30.25);
  EXPECT_DOUBLE_EQ(slider.amount(), 30.25);
  slider.setAmount(1e300);

  EXPECT_DOUBLE_EQ(slider.amount(), 50);
  EXPECT_FALSE(isChosen);
}

}  // namespace
}  // namespace ui
