#include "ui/model_refresher.h"

#include <gtest/gtest.h>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using support::settle;

class ModelRefresherTest : public testing::Test {
 protected:
  ModelRefresherTest() {
    QObject::connect(&refresher, &ModelRefresher::refreshed, [this] {
      ++refreshes;
      seenColor = model.colorIndex();
    });
  }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  ModelRefresher refresher{model};
  int refreshes = 0;
  int seenColor = -1;
};

TEST_F(ModelRefresherTest, ManyChangesAreOneRefreshThatSeesTheNewValues) {
  model.setColorIndex(3);
  model.setColorIndex(5);
  model.setGlow(false);
  EXPECT_EQ(refreshes, 0);
  settle();

  EXPECT_EQ(refreshes, 1);
  EXPECT_EQ(seenColor, 5);
}

TEST_F(ModelRefresherTest, AChangeDuringARefreshIsRefreshedInItsTurn) {
  QObject::connect(&refresher, &ModelRefresher::refreshed, [this] {
    if (model.colorIndex() == 1) model.setColorIndex(2);
  });

  model.setColorIndex(1);
  settle();
  settle();

  EXPECT_EQ(refreshes, 2);
  EXPECT_EQ(seenColor, 2);
}

TEST_F(ModelRefresherTest, NothingIsRefreshedWhenNothingChanges) {
  settle();

  EXPECT_EQ(refreshes, 0);
}

}  // namespace
}  // namespace ui
