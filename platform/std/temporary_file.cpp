#include "platform/std/temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <random>
#include <string>
#include <utility>

namespace platform {

namespace {

constexpr int kAttempts = 16;  // At finding a name; 2^32 names make a second one rare enough.

std::error_code lastError() {
  return {errno, std::generic_category()};
}

/// Short, whatever the target is called: a name has room for 255 bytes.
std::string hiddenName() {
  static thread_local std::random_device entropy;
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), entropy(), 16).ptr;
  return ".wavescribe-" + std::string(digits.data(), end) + ".tmp";
}

/// Makes a rename in `folder` survive a power cut. There is nothing to report: the new file is in
/// its place already.
void flushFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

}  // namespace

TemporaryFile::~TemporaryFile() {
  if (descriptor_ >= 0) close(descriptor_);
  if (!path_.empty()) unlink(path_.c_str());
}

std::error_code TemporaryFile::create(const std::filesystem::path& folder) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::filesystem::path candidate = folder / hiddenName();
    descriptor_ = open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ >= 0) {
      path_ = candidate;
      return {};
    }
    if (errno != EEXIST) break;
  }
  return lastError();
}

std::error_code TemporaryFile::setPermissions(mode_t permissions) {
  struct stat now {};
  if (fstat(descriptor_, &now) != 0) return lastError();
  // File systems without permissions refuse every change, even one to what is already there.
  if ((now.st_mode & kPermissionBits) == permissions) return {};
  return fchmod(descriptor_, permissions) == 0 ? std::error_code{} : lastError();
}

std::error_code TemporaryFile::write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return lastError();
    }
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code TemporaryFile::takePlaceOf(const std::filesystem::path& target) {
  if (fsync(descriptor_) != 0) return lastError();
  if (close(std::exchange(descriptor_, -1)) != 0) return lastError();
  if (std::rename(path_.c_str(), target.c_str()) != 0) return lastError();
  flushFolder(path_.parent_path());
  path_.clear();
  return {};
}

}  // namespace platform
