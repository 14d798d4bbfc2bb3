#include <array>
#include <memory>

#include "tests/recording/recorder_fixture.h"

namespace recording {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Status = platform::VideoWriter::Status;
using RecordedFramesTest = RecorderTest;
using Pixel = std::array<int, 4>;

constexpr Pixel kBlack{0, 0, 0, 255};

Pixel pixelOf(const pixels::Surface& picture, int x, int y) {
  const std::uint8_t* p = picture.row(y) + 4 * x;
  return {p[0], p[1], p[2], p[3]};
}

TEST_F(RecordedFramesTest, TheFirstFrameCarriesTheTimeSinceTheStart) {
  startWell();

  tickAfter(0.0335);

  EXPECT_THAT(times(), ElementsAre(20));
}

TEST_F(RecordedFramesTest, TimesFollowTheClockAndNotTheNumberOfTicks) {
  startWell();

  tickAfter(0.1001);
  tickAfter(1.5);
  tickAfter(0.05);

  EXPECT_THAT(times(), ElementsAre(60, 960, 990));
}

TEST_F(RecordedFramesTest, TwoTicksWithinOneUnitOfTimeYieldOneFrame) {
  startWell();

  tickAfter(0.0501);
  tickAfter(0.0005);

  EXPECT_THAT(times(), ElementsAre(30));
  EXPECT_EQ(rendered, 1);
}

TEST_F(RecordedFramesTest, AFirstFrameAtTimeZeroIsTaken) {
  startWell();

  tickAfter(0);

  EXPECT_THAT(times(), ElementsAre(0));
}

TEST_F(RecordedFramesTest, ASecondRecordingStartsAgainAtZero) {
  startWell();
  tickAfter(10.0001);
  stop();
  startWell();

  tickAfter(0.0501);

  EXPECT_THAT(times(), ElementsAre(30));
}

TEST_F(RecordedFramesTest, WhatIsNotPaintedIsBlack) {
  ASSERT_TRUE(start([](const pixels::DrawingContext& context, pixels::Size) {
                context.pixels.row(0)[4] = 200;  // One pixel, second of the first row.
              }).ok());

  tickAfter(0.05);

  EXPECT_EQ(pixelOf(script.frames.at(0).picture, 0, 0), kBlack);
  EXPECT_EQ(pixelOf(script.frames.at(0).picture, 1, 0), (Pixel{200, 0, 0, 255}));
  EXPECT_EQ(pixelOf(script.frames.at(0).picture, 3, 1), kBlack);
}

TEST_F(RecordedFramesTest, TheRenderClosureGetsTheWholeFrame) {
  pixels::Size size;
  pixels::DrawingContext context;
  ASSERT_TRUE(start([&](const pixels::DrawingContext& c, pixels::Size s) {
                context = c;
                size = s;
              }).ok());

  tickAfter(0.05);

  EXPECT_EQ(size, (pixels::Size{4, 2}));
  EXPECT_EQ(context.pixels.width, 4);
  EXPECT_EQ(context.pixels.height, 2);
  EXPECT_EQ(context.deviceScale, 1);
}

TEST_F(RecordedFramesTest, ATickIsDroppedSilentlyWhileTheWriterIsNotReady) {
  startWell();
  script.ready = false;
  tickAfter(0.05);
  script.ready = true;

  tickAfter(0.0501);

  EXPECT_THAT(times(), ElementsAre(60));
  EXPECT_EQ(rendered, 1);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecordedFramesTest, ATickIsDroppedSilentlyWhileTheWriterIsNotWriting) {
  startWell();
  script.status = Status::unknown;

  tickAfter(0.05);

  EXPECT_EQ(rendered, 0);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecordedFramesTest, ATickIsDroppedSilentlyWithoutABuffer) {
  startWell();
  script.hasBuffers = false;

  tickAfter(0.05);

  EXPECT_EQ(rendered, 0);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(RecordedFramesTest, AFrameThatWasNotTakenLeavesItsTimeToTheNext) {
  startWell();
  script.appends = false;
  tickAfter(0.0501);
  script.appends = true;

  tickAfter(0);

  EXPECT_THAT(times(), ElementsAre(30));
  EXPECT_THAT(failures, IsEmpty());
}

}  // namespace
}  // namespace recording
