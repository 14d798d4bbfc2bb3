#include "scene_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/png/png_encoder.h"

namespace tools {
namespace {

constexpr const char* kScene = R"({
  "width": 64, "height": 40.5, "background": "white", "frame": null, "dim": 0.25,
  "strokes": [
    {"colorIndex": -3, "lastTime": 1.5, "points": [[0.25, 0.5, 12], [0.5, 0.75, 14]]},
    {"colorIndex": 9, "lastTime": 2, "points": []}],
  "now": 3.5, "glow": true, "fadeEnabled": true, "fadeSeconds": 6, 
  "cursor": {"x": 0.1, "y": 0.2, "down": true, "width": 30, "colorIndex": 4}})";

/// The scene with the first occurrence of some of its text replaced.
std::string sceneWith(const std::string& text, const std::string& replacement) {
  std::string scene = kScene;
  return scene.replace(scene.find(text), text.size(), replacement);
}

std::string complaintAbout(const std::string& text) {
  const auto result = sceneFromJson(text, ".");
  return result ? "" : result.error().description;
}

TEST(SceneJson, ReadsEveryField) {
  const auto file = sceneFromJson(kScene, ".");

  ASSERT_TRUE(file) << file.error().description;
  EXPECT_EQ(file.value().size, (pixels::Size{64, 40.5}));
  const render::RenderScene& scene = file.value().scene;
  EXPECT_EQ(scene.background, render::CanvasBackground::white);
  EXPECT_FALSE(scene.frame);
  EXPECT_EQ(scene.dim, 0.25);
  ASSERT_EQ(scene.strokes.size(), 2u);
  EXPECT_EQ(scene.strokes[0].colorIndex, -3);
  EXPECT_EQ(scene.strokes[0].lastTime, 1.5);
  EXPECT_EQ(scene.strokes[0].points, (strokes::StrokePoints{{0.25, 0.5, 12}, {0.5, 0.75, 14}}));
  EXPECT_TRUE(scene.strokes[1].points.empty());
  EXPECT_EQ(scene.now, 3.5);
  EXPECT_TRUE(scene.glow);
  EXPECT_TRUE(scene.fadeEnabled);
  EXPECT_EQ(scene.fadeSeconds, 6);
  EXPECT_EQ(scene.cursor, (render::CursorState{0.1, 0.2, true, 30, 4}));
}

TEST(SceneJson, ReadsTheFrameNextToTheScene) {
  const std::filesystem::path folder = testing::TempDir();
  const auto png = platform::PngEncoder().encodePng(pixels::Surface(3, 2));
  ASSERT_TRUE(png);
  std::ofstream(folder / "frame.png", std::ios::binary)
      .write(reinterpret_cast<const char*>(png.value().data()),
             static_cast<std::streamsize>(png.value().size()));

  const auto file = sceneFromJson(sceneWith(R"("frame": null)", R"("frame": "frame.png")"), folder);

  ASSERT_TRUE(file) << file.error().description;
  ASSERT_TRUE(file.value().scene.frame);
  EXPECT_EQ(file.value().scene.frame->width(), 3);
}

TEST(SceneJson, FrameAndCursorMayBeAbsent) {
  EXPECT_EQ(complaintAbout(sceneWith(R"("frame": null,)", "")), "");
  EXPECT_EQ(complaintAbout(sceneWith(R"("cursor": {"x")", R"("arrow": {"x")")), "");
}

TEST(SceneJson, AMissingFieldIsNamed) {
  EXPECT_EQ(complaintAbout(sceneWith(R"("width": 64,)", "")), "width is missing");
  EXPECT_EQ(complaintAbout(sceneWith(R"("glow": true,)", "")), "glow is missing");
  EXPECT_EQ(complaintAbout(sceneWith(R"("colorIndex": 9,)", "")),
            "strokes[1].colorIndex is missing");
  EXPECT_EQ(complaintAbout(sceneWith(R"("down": true,)", "")), "cursor.down is missing");
}

TEST(SceneJson, AFieldOfTheWrongKindIsNamed) {
  EXPECT_EQ(complaintAbout(sceneWith("64", "\"64\"")), "width must be a number");
  EXPECT_EQ(complaintAbout(sceneWith("\"white\"", "\"pink\"")),
            "background must be camera, black, white or transparent");
  EXPECT_EQ(complaintAbout(sceneWith("\"white\"", "7")), "background must be text");
  EXPECT_EQ(complaintAbout(sceneWith("\"glow\": true", "\"glow\": 1")),
            "glow must be true or false");
  EXPECT_EQ(complaintAbout(sceneWith("[]", "null")), "strokes[1].points must be a list");
  EXPECT_EQ(complaintAbout(sceneWith("[0.5, 0.75, 14]", "[0.5, 0.75]")),
            "strokes[0].points[1] must be [x, y, width]");
  EXPECT_EQ(complaintAbout(sceneWith("[0.5, 0.75, 14]", "[0.5, true, 14]")),
            "strokes[0].points[1][1] must be a number");
  EXPECT_EQ(complaintAbout(sceneWith("-3", "2.5")), "strokes[0].colorIndex must be a whole number");
  EXPECT_EQ(complaintAbout(sceneWith("-3", "99999999999")), "strokes[0].colorIndex is too large");
}

TEST(SceneJson, ASizeOutOfRangeIsNamed) {
  EXPECT_EQ(complaintAbout(sceneWith("64", "0.5")), "width must be from 1 to 32767");
  EXPECT_EQ(complaintAbout(sceneWith("40.5", "1e9")), "height must be from 1 to 32767");
}

TEST(SceneJson, AFrameThatCannotBeReadIsNamed) {
  EXPECT_THAT(complaintAbout(sceneWith(R"("frame": null)", R"("frame": "no-such.png")")),
              testing::StartsWith("frame cannot be read: "));
}

TEST(SceneJson, TextThatIsNoJsonIsSaidToBeNone) {
  EXPECT_THAT(complaintAbout("{\"width\": "), testing::StartsWith("not JSON: "));
  EXPECT_THAT(complaintAbout("[1e999]"), testing::StartsWith("not JSON: "));
  EXPECT_EQ(complaintAbout("[]"), "the file must be an object");
}

}  // namespace
}  // namespace tools
