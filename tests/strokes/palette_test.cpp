#include "strokes/palette.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <string_view>
#include <vector>

namespace strokes {
namespace {

using testing::ElementsAre;

TEST(Palette, EveryColourKnowsItsPlaceAmongTheEight) {
  ASSERT_EQ(Palette::colors.size(), 8u);
  for (std::size_t i = 0; i < Palette::colors.size(); ++i) {
    EXPECT_EQ(Palette::colors[i].id, static_cast<int>(i));
  }
}

TEST(Palette, RunsFromCyanToWhite) {
  std::vector<std::string_view> names;
  for (const PaletteColor& color : Palette::colors) names.push_back(color.name);

  EXPECT_THAT(names,
              ElementsAre("Cyan", "Magenta", "Lime", "Orange", "Yellow", "Red", "Violet", "White"));
}

TEST(Palette, EveryColourButWhiteIsBrightAndSaturated) {
  for (const PaletteColor& color : Palette::colors) {
    const auto [least, most] = std::minmax({color.r, color.g, color.b});
    EXPECT_EQ(most, 1) << color.name;
    EXPECT_EQ(least <= 0.35, color.name != "White") << color.name;
  }
}

TEST(Palette, EveryComponentLiesBetweenZeroAndOne) {
  for (const PaletteColor& color : Palette::colors) {
    for (const double component : {color.r, color.g, color.b}) {
      EXPECT_GE(component, 0);
      EXPECT_LE(component, 1);
    }
  }
}

TEST(Palette, AnyIndexHasAColour) {
  EXPECT_EQ(Palette::colorAt(0).id, 0);
  EXPECT_EQ(Palette::colorAt(7).id, 7);
  EXPECT_EQ(Palette::colorAt(8).id, 0);
  EXPECT_EQ(Palette::colorAt(-1).id, 7);
  EXPECT_EQ(Palette::colorAt(INT_MAX).id, 7);
  EXPECT_EQ(Palette::colorAt(INT_MIN).id, 0);
}

}  // namespace
}  // namespace strokes
