#include "platform/std/atomic_file_store.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/scoped_disk_limit.h"
#include "tests/support/scoped_ordinary_user.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::uint8_t> bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void putFile(const fs::path& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

mode_t permissions(const fs::path& path) {
  struct stat found {};
  EXPECT_EQ(stat(path.c_str(), &found), 0);
  return found.st_mode & 07777;
}

/// The umask of the process, set until the end of the scope.
class ScopedUmask {
 public:
  explicit ScopedUmask(mode_t mask) : before_(umask(mask)) {}
  ~ScopedUmask() { umask(before_); }
  ScopedUmask(const ScopedUmask&) = delete;
  ScopedUmask& operator=(const ScopedUmask&) = delete;

 private:
  mode_t before_;
};

class AtomicFileStoreTest : public testing::Test {
 protected:
  support::TemporaryFolder folder;
  AtomicFileStore store;
};

TEST_F(AtomicFileStoreTest, MakesANewFileAndNothingElse) {
  EXPECT_TRUE(store.replace(folder / "a.png", bytesOf("picture")).ok());

  EXPECT_EQ(contents(folder / "a.png"), "picture");
  EXPECT_THAT(folder.names(), ElementsAre("a.png"));
}

TEST_F(AtomicFileStoreTest, ReplacesALongerFileWhole) {
  putFile(folder / "a.png", "a much longer earlier picture");

  EXPECT_TRUE(store.replace(folder / "a.png", bytesOf("new")).ok());

  EXPECT_EQ(contents(folder / "a.png"), "new");
  EXPECT_THAT(folder.names(), ElementsAre("a.png"));
}

TEST_F(AtomicFileStoreTest, KeepsMegabytesAndNothingAlike) {
  const std::string large(5'000'000, 'x');

  EXPECT_TRUE(store.replace(folder / "large", bytesOf(large)).ok());
  EXPECT_TRUE(store.replace(folder / "empty", {}).ok());

  EXPECT_EQ(contents(folder / "large"), large);
  EXPECT_EQ(fs::file_size(folder / "empty"), 0u);
}

TEST_F(AtomicFileStoreTest, AnEarlierFileThatSomebodyReadsStaysWholeForThem) {
  putFile(folder / "a.png", "earlier");
  std::ifstream reader(folder / "a.png", std::ios::binary);

  ASSERT_TRUE(store.replace(folder / "a.png", bytesOf("new")).ok());

  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "earlier");
}

TEST_F(AtomicFileStoreTest, ANewFileHasThePermissionsOfAnyNewFile) {
  const ScopedUmask mask(027);

  ASSERT_TRUE(store.replace(folder / "a.png", bytesOf("new")).ok());

  EXPECT_EQ(permissions(folder / "a.png"), 0640u);
}

TEST_F(AtomicFileStoreTest, AReplacedFilePassesItsPermissionsOn) {
  const ScopedUmask mask(022);
  putFile(folder / "secret", "earlier");
  putFile(folder / "shared", "earlier");
  ASSERT_EQ(chmod((folder / "secret").c_str(), 0600), 0);
  ASSERT_EQ(chmod((folder / "shared").c_str(), 0666), 0);

  ASSERT_TRUE(store.replace(folder / "secret", bytesOf("new")).ok());
  ASSERT_TRUE(store.replace(folder / "shared", bytesOf("new")).ok());

  EXPECT_EQ(permissions(folder / "secret"), 0600u);
  EXPECT_EQ(permissions(folder / "shared"), 0666u);
}

TEST_F(AtomicFileStoreTest, ALinkStaysAndTheFileBehindItIsReplaced) {
  fs::create_directory(folder / "elsewhere");
  putFile(folder / "elsewhere" / "real.png", "earlier");
  fs::create_symlink("elsewhere/real.png", folder / "link.png");
  fs::create_symlink(folder / "link.png", folder / "second.png");

  ASSERT_TRUE(store.replace(folder / "second.png", bytesOf("new")).ok());

  EXPECT_TRUE(fs::is_symlink(folder / "second.png"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.png"));
  EXPECT_EQ(contents(folder / "elsewhere" / "real.png"), "new");
}

TEST_F(AtomicFileStoreTest, ALinkThatLeadsNowhereYetGetsItsFile) {
  fs::create_symlink("later.png", folder / "link.png");

  ASSERT_TRUE(store.replace(folder / "link.png", bytesOf("new")).ok());

  EXPECT_TRUE(fs::is_symlink(folder / "link.png"));
  EXPECT_EQ(contents(folder / "later.png"), "new");
}

TEST_F(AtomicFileStoreTest, AsManyLinksAreFollowedAsTheKernelFollows) {
  putFile(folder / "0", "earlier");
  for (int i = 1; i <= 41; ++i)
    fs::create_symlink(std::to_string(i - 1), folder / std::to_string(i));
  ASSERT_EQ(contents(folder / "40"), "earlier");
  ASSERT_FALSE(std::ifstream(folder / "41").is_open());

  EXPECT_TRUE(store.replace(folder / "40", bytesOf("new")).ok());
  EXPECT_FALSE(store.replace(folder / "41", bytesOf("newer")).ok());

  EXPECT_EQ(contents(folder / "0"), "new");
}

TEST_F(AtomicFileStoreTest, LinksThatRunInACircleFail) {
  fs::create_symlink("b", folder / "a");
  fs::create_symlink("a", folder / "b");

  EXPECT_FALSE(store.replace(folder / "a", bytesOf("new")).ok());

  EXPECT_THAT(folder.names(), ElementsAre("a", "b"));
}

TEST_F(AtomicFileStoreTest, TheLongestNameAFileCanHaveIsFine) {
  const std::string name(255, 'n');

  EXPECT_TRUE(store.replace(folder / name, bytesOf("new")).ok());

  EXPECT_THAT(folder.names(), ElementsAre(name));
}

TEST_F(AtomicFileStoreTest, APlainNameLiesInTheCurrentFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());

  const bool saved = store.replace("a.png", bytesOf("new")).ok();

  fs::current_path(before);
  EXPECT_TRUE(saved);
  EXPECT_EQ(contents(folder / "a.png"), "new");
}

TEST_F(AtomicFileStoreTest, AMissingFolderFailsNamingThePathAndTheReason) {
  const auto result = store.replace(folder / "missing/a.png", bytesOf("new"));

  ASSERT_FALSE(result.ok());
  EXPECT_THAT(result.error().description, AllOf(HasSubstr((folder / "missing/a.png").string()),
                                                HasSubstr("No such file or directory")));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(AtomicFileStoreTest, AFolderIsNeverReplaced) {
  fs::create_directory(folder / "a.png");

  const auto result = store.replace(folder / "a.png", bytesOf("new"));

  ASSERT_FALSE(result.ok());
  EXPECT_THAT(result.error().description, HasSubstr("Is a directory"));
  EXPECT_TRUE(fs::is_directory(folder / "a.png"));
  EXPECT_THAT(folder.names(), ElementsAre("a.png"));
}

TEST_F(AtomicFileStoreTest, APathWithoutANameFails) {
  EXPECT_FALSE(store.replace("", bytesOf("new")).ok());
  EXPECT_FALSE(store.replace(folder / "new/", bytesOf("new")).ok());

  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(AtomicFileStoreTest, WhatIsNoRegularFileIsNeverReplaced) {
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);

  EXPECT_FALSE(store.replace(folder / "pipe", bytesOf("new")).ok());

  EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
  EXPECT_THAT(folder.names(), ElementsAre("pipe"));
}

TEST_F(AtomicFileStoreTest, AFullDiskLeavesTheEarlierFileAndNoOther) {
  putFile(folder / "a.png", "earlier");
  const std::string large(1'000'000, 'x');

  Result<void> result;
  {
    const support::ScopedDiskLimit limit(4096);
    result = store.replace(folder / "a.png", bytesOf(large));
  }

  ASSERT_FALSE(result.ok());
  EXPECT_THAT(result.error().description,
              AllOf(HasSubstr((folder / "a.png").string()), HasSubstr("File too large")));
  EXPECT_EQ(contents(folder / "a.png"), "earlier");
  EXPECT_THAT(folder.names(), ElementsAre("a.png"));
}

TEST_F(AtomicFileStoreTest, AFileThatMayNotBeWrittenToStays) {
  putFile(folder / "a.png", "earlier");
  ASSERT_EQ(chmod((folder / "a.png").c_str(), 0444), 0);
  ASSERT_EQ(chmod(folder.path().c_str(), 0777), 0);

  Result<void> result;
  {
    const support::ScopedOrdinaryUser user;
    result = store.replace(folder / "a.png", bytesOf("new"));
  }

  ASSERT_FALSE(result.ok());
  EXPECT_THAT(result.error().description, HasSubstr("Permission denied"));
  EXPECT_EQ(contents(folder / "a.png"), "earlier");
  EXPECT_THAT(folder.names(), ElementsAre("a.png"));
}

TEST_F(AtomicFileStoreTest, AFolderThatMayNotBeWrittenToStaysAsItWas) {
  ASSERT_EQ(chmod(folder.path().c_str(), 0555), 0);

  Result<void> result;
  {
    const support::ScopedOrdinaryUser user;
    result = store.replace(folder / "a.png", bytesOf("new"));
  }

  ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
  ASSERT_FALSE(result.ok());
  EXPECT_THAT(result.error().description, HasSubstr("Permission denied"));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(AtomicFileStoreTest, RemovesAFile) {
  putFile(folder / "a.mp4", "earlier");

  EXPECT_TRUE(store.remove(folder / "a.mp4").ok());
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(AtomicFileStoreTest, RemovesALinkAndNotTheFileBehindIt) {
  putFile(folder / "file", "earlier");
  fs::create_symlink("file", folder / "link");

  EXPECT_TRUE(store.remove(folder / "link").ok());
  EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST_F(AtomicFileStoreTest, RemovesNeitherFoldersNorPipes) {
  fs::create_directory(folder / "folder");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);

  EXPECT_FALSE(store.remove(folder / "folder").ok());
  EXPECT_FALSE(store.remove(folder / "pipe").ok());
  EXPECT_THAT(folder.names(), ElementsAre("folder", "pipe"));
}

TEST_F(AtomicFileStoreTest, RemovingWhatIsNotThereFailsWithTheReason) {
  EXPECT_THAT(store.remove(folder / "gone").error().description,
              HasSubstr("No such file or directory"));
}

}  // namespace
}  // namespace platform
