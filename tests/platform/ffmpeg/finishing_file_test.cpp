#include "platform/ffmpeg/finishing_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include "tests/support/scoped_ordinary_user.h"
#include "tests/support/temporary_folder.h"

namespace {

using platform::ffmpeg::FinishingFile;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kLeftover = ".wavescribe-12ab.finishing";

struct FinishingFileTest : testing::Test {
  support::TemporaryFolder folder;
  const std::filesystem::path recording = folder / "a.mp4";

  std::unique_ptr<FinishingFile> make() const {
    return std::move(FinishingFile::createBeside(recording)).value();
  }
};

void write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path) << text;
}

std::string textOf(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

TEST_F(FinishingFileTest, IsHiddenAndHasAShortName) {
  const auto file = make();

  EXPECT_THAT(file->path().filename().string(), AllOf(StartsWith("."), SizeIs(testing::Lt(40u))));
  EXPECT_EQ(file->path().parent_path(), folder.path());
}

TEST_F(FinishingFileTest, TakesThePlaceOfTheRecording) {
  write(recording, "fragments");
  const auto file = make();
  write(file->path(), "finished");

  EXPECT_TRUE(file->takePlaceOf(recording).ok());

  EXPECT_EQ(textOf(recording), "finished");
  EXPECT_THAT(folder.names(), ElementsAre("a.mp4"));
}

TEST_F(FinishingFileTest, IsGoneUnlessItTookThatPlace) {
  write(recording, "fragments");

  make().reset();

  EXPECT_EQ(textOf(recording), "fragments");
  EXPECT_THAT(folder.names(), ElementsAre("a.mp4"));
}

TEST_F(FinishingFileTest, WhenItCannotTakeThatPlaceTheErrorTellsWhy) {
  std::filesystem::create_directory(recording);

  const auto taken = make()->takePlaceOf(recording);

  ASSERT_FALSE(taken.ok());
  EXPECT_THAT(taken.error().description, EndsWith("a.mp4: Is a directory"));
  EXPECT_THAT(folder.names(), ElementsAre("a.mp4"));
}

TEST_F(FinishingFileTest, AFolderThatMayNotBeWrittenToIsAnErrorWithItsReason) {
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
  const support::ScopedOrdinaryUser user;  // Root may write everywhere.

  const auto made = FinishingFile::createBeside(recording);

  ASSERT_FALSE(made.ok());
  EXPECT_THAT(made.error().description, EndsWith("Permission denied"));
}

TEST_F(FinishingFileTest, WhatACrashLeftBehindIsRemovedByTheNextOne) {
  write(folder / kLeftover, "half a video");

  make().reset();

  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(FinishingFileTest, AFileThatSomebodyWorksOnStays) {
  const auto other = make();

  make().reset();

  EXPECT_THAT(folder.names(), ElementsAre(other->path().filename().string()));
}

TEST_F(FinishingFileTest, OnlyFilesOfItsOwnKindAreRemoved) {
  write(folder / ".wavescribe-12ab.tmp", "a picture");
  write(folder / "wavescribe-12ab.finishing", "a person's file");
  std::filesystem::create_directory(folder / ".wavescribe-34cd.finishing");
  std::filesystem::create_symlink("a.mp4", folder / kLeftover);

  make().reset();

  EXPECT_THAT(folder.names(), SizeIs(4));
}

}  // namespace
