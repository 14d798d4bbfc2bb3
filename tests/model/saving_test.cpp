#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "model/app_model.h"
#include "render/canvas_renderer.h"
#include "tests/support/fake_platform.h"
#include "tests/support/observer_log.h"

namespace model {
namespace {

using render::CanvasBackground;
using support::Announcement;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

const std::filesystem::path kChosen = "/pictures/painting.png";

class Saving : public testing::Test {
 protected:
  Saving() { model.useMouseOnly(); }

  void save(bool withCamera) {
    machine.savePanel.willAnswer(kChosen);
    model.saveImage(withCamera);
  }

  /// The one picture that was encoded.
  const pixels::Surface& picture() const { return machine.pictureEncoder.pictures.at(0); }

  /// The alpha of the picture in its top left corner, where no test draws.
  int cornerAlpha() const { return picture().row(0)[3]; }

  support::FakePlatform machine;
  AppModel model{machine.services()};
};

TEST_F(Saving, AsksForAPngNamedAfterTheProgram) {
  model.saveImage(false);

  ASSERT_THAT(machine.savePanel.requests, SizeIs(1));
  EXPECT_EQ(machine.savePanel.requests[0].kind, platform::FileKind::png);
  EXPECT_EQ(machine.savePanel.requests[0].proposedName, "Wavescribe.png");
  EXPECT_EQ(machine.savePanel.requests[0].proposedFolder, std::nullopt);
}

TEST_F(Saving, CancellingChangesNothingAndShowsNoMessage) {
  machine.savePanel.willAnswer(std::nullopt);
  const support::ObserverLog log(model);

  model.saveImage(true);

  EXPECT_THAT(machine.pictureEncoder.pictures, IsEmpty());
  EXPECT_THAT(machine.files.files, IsEmpty());
  EXPECT_THAT(log.announcements, IsEmpty());
}

TEST_F(Saving, PutsTheEncodedPictureWhereThePersonChose) {
  machine.pictureEncoder.bytes = {137, 80, 78, 71};
  const support::ObserverLog log(model);

  save(true);

  EXPECT_THAT(machine.files.files, ElementsAre(Pair(kChosen, ElementsAre(137, 80, 78, 71))));
  EXPECT_THAT(log.announcements, IsEmpty());
}

TEST_F(Saving, APictureOfASixteenToNineCanvasIs1920By1080) {
  save(true);

  ASSERT_THAT(machine.pictureEncoder.pictures, SizeIs(1));
  EXPECT_EQ(picture().width(), 1920);
  EXPECT_EQ(picture().height(), 1080);
}

TEST_F(Saving, ThePaintingAloneIsTransparentWhateverTheBackground) {
  model.setBackground(CanvasBackground::black);

  save(false);

  EXPECT_EQ(cornerAlpha(), 0);
}

TEST_F(Saving, ThePaintingAloneKeepsItsStrokes) {
  model.setGlow(false);
  model.mouseDown(0.5, 0.5);
  model.mouseUp();

  save(false);

  EXPECT_EQ(picture().row(540)[960 * 4 + 3], 255);
}

TEST_F(Saving, TheBackgroundPictureIsTheOneOnTheCanvas) {
  model.setBackground(CanvasBackground::white);

  save(true);

  EXPECT_THAT(std::vector<int>(picture().row(0), picture().row(0) + 4),
              ElementsAre(255, 255, 255, 255));
}

TEST_F(Saving, WithATransparentBackgroundThePictureIsTransparentToo) {
  model.setBackground(CanvasBackground::transparent);

  save(true);

  EXPECT_EQ(cornerAlpha(), 0);
}

TEST_F(Saving, ThePictureShowsNoCursor) {
  model.mouseDown(0.5, 0.5);
  const auto canvas = render::CanvasRenderer::makeImage(
      model.makeScene(CanvasBackground::transparent, false), {1920, 1080});
  ASSERT_TRUE(canvas.has_value());

  save(false);

  EXPECT_TRUE(picture() == *canvas);
}

TEST_F(Saving, APictureThatCannotBeEncodedIsReportedWithItsSize) {
  machine.pictureEncoder.failure = platform::Error{"no memory"};

  save(true);

  EXPECT_EQ(model.errorMessage(), "The image could not be created.");
  EXPECT_EQ(model.errorDetails(),
            "CanvasRenderer.makeImage or PNG encoding returned nil for size (1920.0, 1080.0).");
  EXPECT_THAT(machine.files.files, IsEmpty());
}

TEST_F(Saving, AFileThatCannotBeWrittenIsReportedWithTheReason) {
  machine.files.failure = platform::Error{"The disk is full."};
  const support::ObserverLog log(model);

  save(true);

  EXPECT_EQ(model.errorMessage(), "The image could not be saved.");
  EXPECT_EQ(model.errorDetails(), "The disk is full.");
  EXPECT_THAT(log.announcements, ElementsAre(Announcement{Property::errorMessage, "none"},
                                             Announcement{Property::errorDetails, "none"}));
}

TEST_F(Saving, DismissingTheErrorTakesMessageAndDetailsAway) {
  machine.files.failure = platform::Error{"The disk is full."};
  save(true);

  model.dismissError();

  EXPECT_EQ(model.errorMessage(), std::nullopt);
  EXPECT_EQ(model.errorDetails(), std::nullopt);
}

TEST_F(Saving, LeavesThePaintingAndTheSettingsAlone) {
  model.setBackground(CanvasBackground::black);
  model.mouseDown(0.5, 0.5);

  save(false);

  EXPECT_EQ(model.background(), CanvasBackground::black);
  EXPECT_TRUE(model.store().isDrawing());
  EXPECT_EQ(model.strokeCount(), 1);
}

}  // namespace
}  // namespace model
