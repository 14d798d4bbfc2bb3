#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/png/read_png.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

class RenderScene : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::path(testing::TempDir()) /
              testing::UnitTest::GetInstance()->current_test_info()->name();
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }

  /// The exit status of the tool for a scene file with this text.
  int run(const std::string& text) {
    std::ofstream(folder_ / "scene.json") << text;
    return runOn(folder_ / "scene.json");
  }

  int runOn(const fs::path& scene) {
    const std::string command = std::string(RENDER_SCENE) + " '" + scene.string() + "' '" +
                                picture().string() + "' 2> '" + (folder_ / "said").string() + "'";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  fs::path folder() const { return folder_; }

  std::string said() const {
    std::ifstream stream(folder_ / "said");
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  fs::path picture() const { return folder_ / "picture.png"; }

 private:
  fs::path folder_;
};

constexpr const char* kRest = R"("frame": null, "dim": 0, "strokes": [], "now": 0, "glow": false,
  "fadeEnabled": false, "fadeSeconds": 6, "cursor": null})";

TEST_F(RenderScene, WritesThePictureOfAScene) {
  EXPECT_EQ(run(std::string(R"({"width": 7, "height": 5, "background": "white", )") + kRest), 0);

  const auto image = platform::readPng(picture());
  ASSERT_TRUE(image) << image.error().description;
  EXPECT_EQ(image.value().width(), 7);
  EXPECT_EQ(image.value().height(), 5);
  EXPECT_EQ(image.value().row(4)[4 * 6], 255);
}

TEST_F(RenderScene, AMalformedSceneGivesTheFieldStatusTwoAndNoPicture) {
  EXPECT_EQ(run(std::string(R"({"width": 7, "height": 5, "background": 3, )") + kRest), 2);

  EXPECT_NE(said().find("background must be text"), std::string::npos) << said();
  EXPECT_FALSE(fs::exists(picture()));
}

TEST_F(RenderScene, AFolderIsNoScene) {
  EXPECT_EQ(runOn(folder()), 2);

  EXPECT_NE(said().find("cannot be read"), std::string::npos) << said();
}

}  // namespace
}  // namespace tools
