#include "platform/ffmpeg/finishing_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/folder.h"

namespace platform::ffmpeg {

namespace {

constexpr std::string_view kPrefix = ".wavescribe-";
constexpr std::string_view kSuffix = ".finishing";
constexpr int kAttempts = 16;  // At finding a name; 2^32 names make a second one rare enough.

/// Short, whatever the recording is called: a name has room for 255 bytes.
std::string hiddenName() {
  static thread_local std::random_device entropy;
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), entropy(), 16).ptr;
  return std::string(kPrefix) + std::string(digits.data(), end) + std::string(kSuffix);
}

bool lock(int descriptor) {
  return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

bool isStillThere(int descriptor) {
  struct stat found {};
  return ::fstat(descriptor, &found) == 0 && found.st_nlink > 0;
}

bool isOurFile(int descriptor) {
  struct stat found {};
  return ::fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid();
}

/// Where locks are not known, nothing is removed.
void removeIfNobodysWork(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  if (isOurFile(descriptor) && lock(descriptor)) ::unlink(path.c_str());
  ::close(descriptor);
}

void removeLeftovers(const std::filesystem::path& folder) {
  std::error_code ignored;
  for (std::filesystem::directory_iterator at(folder, ignored), end; !ignored && at != end;
       at.increment(ignored)) {
    const std::string name = at->path().filename().string();
    if (name.starts_with(kPrefix) && name.ends_with(kSuffix)) removeIfNobodysWork(at->path());
  }
}

}  // namespace

Result<std::unique_ptr<FinishingFile>> FinishingFile::createBeside(
    const std::filesystem::path& recording) {
  const std::filesystem::path folder = folderOf(recording);
  removeLeftovers(folder);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::filesystem::path path = folder / hiddenName();
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno == EEXIST) continue;
    if (descriptor < 0) return fileError(folder, errno);
    // Somebody who tidies up may have been quicker than the lock.
    if ((lock(descriptor) || errno != EWOULDBLOCK) && isStillThere(descriptor))
      return std::unique_ptr<FinishingFile>(new FinishingFile(path, descriptor));
    ::close(descriptor);
  }
  return fileError(folder, EEXIST);
}

FinishingFile::FinishingFile(std::filesystem::path path, int descriptor)
    : path_(std::move(path)), descriptor_(descriptor) {}

FinishingFile::~FinishingFile() {
  if (!tookPlace_) ::unlink(path_.c_str());
  ::close(descriptor_);
}

Result<void> FinishingFile::takePlaceOf(const std::filesystem::path& recording) {
  if (::fsync(descriptor_) != 0) return fileError(path_, errno);
  if (std::rename(path_.c_str(), recording.c_str()) != 0) return fileError(recording, errno);
  tookPlace_ = true;
  syncFolder(folderOf(recording));
  return {};
}

}  // namespace platform::ffmpeg
