#include "hand/color_hand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hand {
namespace {

using testing::ElementsAre;

TEST(ColorHand, ListsItsCasesInOrder) {
  EXPECT_THAT(kAllColorHands, ElementsAre(ColorHand::left, ColorHand::right, ColorHand::either));
}

TEST(ColorHand, IsKnownByItsText) {
  EXPECT_EQ(rawValue(ColorHand::left), "left");
  EXPECT_EQ(rawValue(ColorHand::right), "right");
  EXPECT_EQ(rawValue(ColorHand::either), "either");
  for (const ColorHand hand : kAllColorHands) EXPECT_EQ(colorHandFrom(rawValue(hand)), hand);
}

TEST(ColorHand, AnyOtherTextYieldsNothing) {
  EXPECT_EQ(colorHandFrom("Left"), std::nullopt);
  EXPECT_EQ(colorHandFrom(""), std::nullopt);
}

}  // namespace
}  // namespace hand
