#include "ui/error_banner.h"

#include <gtest/gtest.h>

#include <QVBoxLayout>

#include "tests/support/fake_platform.h"
#include "tests/support/widgets.h"

namespace ui {
namespace {

using support::button;
using support::label;
using support::pixelAt;
using support::press;
using support::settle;

class ErrorBannerTest : public testing::Test {
 protected:
  ErrorBannerTest() {
    auto* column = new QVBoxLayout(&window);
    column->addWidget(banner);
    column->addStretch(1);
    window.resize(600, 400);
    window.show();
  }

  void fail(const std::string& why) {
    machine.savePanel.willAnswer("/pictures/a.png");
    machine.files.failure = platform::Error{why};
    model.saveImage(false);
    banner->refresh();
    settle();
  }

  void dismiss() {
    press(*banner, "Dismiss");
    banner->refresh();
    settle();
  }

  QScrollArea& details() { return *banner->findChild<QScrollArea*>(); }

  support::FakePlatform machine;
  model::AppModel model{machine.services()};
  QWidget window;
  ErrorBanner* banner = new ErrorBanner(model);
};

TEST_F(ErrorBannerTest, IsThereOnlyWhileThereIsAnError) {
  EXPECT_FALSE(banner->isVisible());

  fail("disk full");
  EXPECT_TRUE(banner->isVisible());
  EXPECT_TRUE(label(*banner, "The image could not be saved."));

  dismiss();
  EXPECT_FALSE(banner->isVisible());
}

TEST_F(ErrorBannerTest, DismissClearsTheDetailsAsWell) {
  fail("disk full");

  dismiss();

  EXPECT_EQ(model.errorMessage(), std::nullopt);
  EXPECT_EQ(model.errorDetails(), std::nullopt);
}

TEST_F(ErrorBannerTest, DetailsAreShownOnRequestAndHiddenAgain) {
  fail("disk full");
  EXPECT_FALSE(details().isVisible());

  press(*banner, "Show Details");
  EXPECT_TRUE(details().isVisible());
  EXPECT_TRUE(label(*banner, "disk full"));

  press(*banner, "Hide Details");
  EXPECT_FALSE(details().isVisible());
}

TEST_F(ErrorBannerTest, TheNextErrorStartsWithItsDetailsHidden) {
  fail("disk full");
  press(*banner, "Show Details");
  dismiss();

  fail("no such folder");

  EXPECT_FALSE(details().isVisible());
  EXPECT_TRUE(button(*banner, "Show Details"));
  EXPECT_TRUE(label(*banner, "no such folder"));
}

TEST_F(ErrorBannerTest, DetailsCanBeSelectedAndScrollBeyond100Points) {
  std::string lines;
  for (int i = 0; i < 40; ++i) lines += "one more line of a long story\n";
  fail(lines);
  press(*banner, "Show Details");

  EXPECT_EQ(details().height(), 100);
  EXPECT_TRUE(label(*banner, "one more line")->textInteractionFlags() & Qt::TextSelectableByMouse);
}

TEST_F(ErrorBannerTest, ShortDetailsTakeLittleRoom) {
  fail("disk full");
  press(*banner, "Show Details");

  EXPECT_LT(details().height(), 40);
}

TEST_F(ErrorBannerTest, IsACardOfTheWindowsColourWithAYellowSign) {
  fail("disk full");
  const QPoint inTheCard(ErrorBanner::kShadowRoom + 4, banner->height() / 2);

  EXPECT_EQ(pixelAt(*banner, inTheCard), banner->palette().color(QPalette::Window));
  const QPoint inTheSign(ErrorBanner::kShadowRoom + 10 + 5, banner->height() / 2 + 6);
  EXPECT_NEAR(pixelAt(*banner, inTheSign).hsvHue(), 48, 6);
}

}  // namespace
}  // namespace ui
