#include <gmock/gmock.h>

#include <optional>
#include <vector>

#include "model/app_model.h"
#include "platform/png/png_encoder.h"
#include "platform/png/read_png.h"
#include "platform/std/atomic_file_store.h"
#include "tests/support/fake_platform.h"
#include "tests/support/temporary_folder.h"

namespace model {
namespace {

using testing::ElementsAre;

/// Saving with the true encoder and the true disk.
class SavingToDisk : public testing::Test {
 protected:
  platform::Services services() {
    platform::Services fakes = machine.services();
    return {.clock = fakes.clock,
            .mainQueue = fakes.mainQueue,
            .timers = fakes.timers,
            .savePanel = fakes.savePanel,
            .pictureEncoder = encoder,
            .files = files,
            .videoWriters = fakes.videoWriters,
            .calendar = fakes.calendar,
            .folders = fakes.folders,
            .handPoseRequest = fakes.handPoseRequest,
            .queues = fakes.queues,
            .captureService = fakes.captureService,
            .cameraPermission = fakes.cameraPermission,
            .settingsPage = fakes.settingsPage,
            .activation = fakes.activation};
  }

  static std::vector<int> pixel(const pixels::Image& image, int x, int y) {
    return {image.row(y) + 4 * x, image.row(y) + 4 * x + 4};
  }

  support::TemporaryFolder folder;
  support::FakePlatform machine;
  platform::PngEncoder encoder;
  platform::AtomicFileStore files;
  AppModel model{services()};
};

TEST_F(SavingToDisk, ThePaintingAloneReadsBackAsItWasPainted) {
  model.setGlow(false);
  model.setColorIndex(5);
  model.mouseDown(0.25, 0.5);
  model.mouseUp();
  machine.savePanel.willAnswer(folder / "painting.png");

  model.saveImage(false);

  ASSERT_EQ(model.errorMessage(), std::nullopt);
  EXPECT_THAT(folder.names(), ElementsAre("painting.png"));
  const auto saved = platform::readPng(folder / "painting.png");
  ASSERT_TRUE(saved.ok());
  EXPECT_EQ(saved.value().width(), 1920);
  EXPECT_EQ(saved.value().height(), 1080);
  EXPECT_THAT(pixel(saved.value(), 480, 540), ElementsAre(64, 51, 255, 255));
  EXPECT_THAT(pixel(saved.value(), 960, 540), ElementsAre(0, 0, 0, 0));
}

TEST_F(SavingToDisk, AFolderThatIsGoneIsReportedAndNothingIsLeftBehind) {
  machine.savePanel.willAnswer(folder / "gone/painting.png");

  model.saveImage(true);

  EXPECT_EQ(model.errorMessage(), "The image could not be saved.");
  ASSERT_TRUE(model.errorDetails().has_value());
  EXPECT_THAT(*model.errorDetails(), testing::HasSubstr("No such file or directory"));
  EXPECT_THAT(folder.names(), ElementsAre());
}

}  // namespace
}  // namespace model
