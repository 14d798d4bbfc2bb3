// Recordings that meet trouble: folders, disks and people.

#include <fstream>

#include "tests/platform/ffmpeg/video_writing_fixture.h"
#include "tests/support/scoped_disk_limit.h"
#include "tests/support/scoped_ordinary_user.h"

namespace platform::ffmpeg {
namespace {

using support::readVideo;
using support::RecordedVideo;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Status = VideoWriter::Status;
using VideoTroubleTest = VideoWritingTest;

TEST_F(VideoTroubleTest, SizesThatTheFormatDoesNotKnowAreRefused) {
  for (const auto& [width, height] : {std::pair{64, 47}, {63, 48}, {0, 48}, {64, -2}}) {
    auto made = factory.make(path);
    EXPECT_FALSE(std::move(made).value()->addInput({width, height, 30})) << width << "x" << height;
  }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(VideoTroubleTest, AFolderThatIsGoneIsAnErrorWithItsReason) {
  const auto made = factory.make(folder / "gone/a.mp4");

  ASSERT_FALSE(made.ok());
  EXPECT_THAT(made.error().description, EndsWith("gone/a.mp4: No such file or directory"));
}

TEST_F(VideoTroubleTest, AFolderThatMayNotBeWrittenToIsAnErrorWithItsReason) {
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));

  const auto made = [&] {
    const support::ScopedOrdinaryUser user;  // Root may write everywhere.
    return factory.make(path);
  }();

  ASSERT_FALSE(made.ok());
  EXPECT_THAT(made.error().description, EndsWith("Permission denied"));
}

TEST_F(VideoTroubleTest, AStartOnAFullDiskFailsWithItsReasonAndLeavesNoFile) {
  auto made = factory.make(path);
  writer = std::move(made).value();
  ASSERT_TRUE(writer->addInput({64, 48, 30}));
  {
    const support::ScopedDiskLimit full(100);

    EXPECT_FALSE(writer->startWriting());
  }

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description, EndsWith("File too large"));
  writer.reset();
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(VideoTroubleTest, ADiskThatGetsFullFailsTheWriterAndWhatWasWrittenPlays) {
  const support::ScopedDiskLimit full(200'000);
  start();

  std::int64_t time = 0;
  while (writer->status() == Status::writing && time < 20'000) appendNoise(time += 20);

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description, EndsWith("File too large"));
  EXPECT_FALSE(writer->isReadyForMoreMediaData());
  const RecordedVideo video = readVideo(path, support::Pictures::leaveOut);
  EXPECT_EQ(video.error, "");
  EXPECT_GT(video.frames.size(), 15u);
  EXPECT_EQ(video.boxes.back(), "mdat");
}

TEST_F(VideoTroubleTest, FinishingAWriterThatHasFailedTellsSo) {
  const support::ScopedDiskLimit full(50'000);
  start();
  std::int64_t time = 0;
  while (writer->status() == Status::writing && time < 20'000) appendNoise(time += 20);

  finish();

  EXPECT_EQ(writer->status(), Status::failed);
}

TEST_F(VideoTroubleTest, ARewriteThatFailsLeavesTheRecordingAndTellsSo) {
  start();
  for (int i = 1; i <= 50; ++i) appendPlain(20 * i);
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));

  {
    const support::ScopedOrdinaryUser user;  // Root may write everywhere.
    finish();
  }
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description, HasSubstr("is complete and plays"));
  EXPECT_THAT(writer->error()->description, EndsWith("Permission denied"));
  const RecordedVideo video = readVideo(path);
  EXPECT_EQ(video.error, "");
  EXPECT_EQ(video.frames.size(), 50u);
}

TEST_F(VideoTroubleTest, AVideoWithoutAFrameIsAnErrorAndNoFile) {
  start();

  finish();

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_EQ(writer->error()->description, "No frame was recorded.");
  writer.reset();
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(VideoTroubleTest, ADiskWithRoomForTheHeadOfTheFileOnlyKeepsNoFile) {
  const support::ScopedDiskLimit full(1500);
  start();
  std::int64_t time = 0;
  while (writer->status() == Status::writing && time < 20'000) appendNoise(time += 20);
  ASSERT_EQ(writer->status(), Status::failed);

  writer.reset();

  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(VideoTroubleTest, ARecordingThatIsMovedMeanwhileIsFinishedWhereItIs) {
  start();
  for (int i = 1; i <= 30; ++i) appendPlain(20 * i);
  const std::filesystem::path moved = folder / "elsewhere.mp4";
  std::filesystem::rename(path, moved);

  finish();

  EXPECT_EQ(writer->status(), Status::completed);
  const RecordedVideo video = readVideo(moved);
  EXPECT_EQ(video.frames.size(), 30u);
  EXPECT_THAT(video.boxes, Not(Contains("moof")));
  EXPECT_THAT(folder.names(), ElementsAre("elsewhere.mp4"));
}

TEST_F(VideoTroubleTest, ARecordingThatIsRemovedMeanwhileIsToldOf) {
  start();
  for (int i = 1; i <= 30; ++i) appendPlain(20 * i);
  std::filesystem::remove(path);

  finish();

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_THAT(writer->error()->description,
              EndsWith("It was removed or replaced before it was finished."));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(VideoTroubleTest, WhatTookTheRecordingsPlaceIsNotTouched) {
  start();
  for (int i = 1; i <= 30; ++i) appendPlain(20 * i);
  std::filesystem::remove(path);
  std::ofstream(path) << "another file";

  finish();

  EXPECT_EQ(writer->status(), Status::failed);
  EXPECT_EQ(std::filesystem::file_size(path), 12u);
}

TEST_F(VideoTroubleTest, AnEmptyRecordingDoesNotTakeAnotherFileWithIt) {
  start();
  std::filesystem::remove(path);
  std::ofstream(path) << "another file";

  writer.reset();

  EXPECT_THAT(folder.names(), ElementsAre("a video: 1.mp4"));
}

TEST_F(VideoTroubleTest, ANewRecordingOfTheSameNameIsSafeFromTheOneThatIsStillFinished) {
  start({1280, 720, 30});
  for (int i = 1; i <= 60; ++i) appendNoise(20 * i);
  const std::unique_ptr<VideoWriter> earlier = std::move(writer);
  std::promise<void> ended;
  earlier->finishWriting([&] { ended.set_value(); });
  std::filesystem::remove(path);  // As somebody does who agrees to replace it.
  start();
  for (int i = 1; i <= 40; ++i) appendPlain(20 * i);
  ended.get_future().wait();

  finish();

  EXPECT_EQ(writer->status(), Status::completed);
  const RecordedVideo video = readVideo(path);
  EXPECT_EQ(video.width, 64);
  EXPECT_EQ(video.frames.size(), 40u);
  EXPECT_EQ(folder.names().size(), 1u);
}

}  // namespace
}  // namespace platform::ffmpeg
