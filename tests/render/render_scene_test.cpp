#include "render/render_scene.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace render {
namespace {

TEST(CanvasBackground, IsNamedInText) {
  for (const auto& [background, text] :
       {std::pair{CanvasBackground::camera, "camera"}, std::pair{CanvasBackground::black, "black"},
        std::pair{CanvasBackground::white, "white"},
        std::pair{CanvasBackground::transparent, "transparent"}}) {
    EXPECT_EQ(rawValue(background), text);
    EXPECT_EQ(canvasBackgroundFrom(text), background);
  }
}

TEST(CanvasBackground, OnlyExactNamesCount) {
  EXPECT_EQ(canvasBackgroundFrom("Camera"), std::nullopt);
  EXPECT_EQ(canvasBackgroundFrom(""), std::nullopt);
  EXPECT_EQ(canvasBackgroundFrom("black "), std::nullopt);
}

TEST(CanvasBackground, PeopleChooseAmongCameraBlackAndWhite) {
  EXPECT_THAT(userChoices, testing::ElementsAre(CanvasBackground::camera, CanvasBackground::black,
                                                CanvasBackground::white));
}

TEST(CanvasBackground, AllOfThemCanBeListed) {
  EXPECT_THAT(allBackgrounds,
              testing::ElementsAre(CanvasBackground::camera, CanvasBackground::black,
                                   CanvasBackground::white, CanvasBackground::transparent));
}

}  // namespace
}  // namespace render
