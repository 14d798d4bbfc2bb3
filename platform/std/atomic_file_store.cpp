#include "platform/std/atomic_file_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <system_error>

#include "platform/std/temporary_file.h"

namespace platform {

namespace {

constexpr int kMostLinks = 40;  // As many as the kernel follows in one path.

std::error_code systemError(int number) {
  return {number, std::generic_category()};
}

/// Where a write to `path` would end up. A link that leads nowhere yet names the file to be made.
std::error_code followLinks(std::filesystem::path& path) {
  for (int followed = 0; followed <= kMostLinks; ++followed) {
    std::error_code isNoLink;
    const std::filesystem::path next = std::filesystem::read_symlink(path, isNoLink);
    if (isNoLink) return {};
    path = path.parent_path() / next;
  }
  return systemError(ELOOP);
}

/// Finds out whether `target` may be replaced; its permissions, if it exists.
std::error_code examine(const std::filesystem::path& target, std::optional<mode_t>& permissions) {
  struct stat found {};
  if (stat(target.c_str(), &found) != 0)
    return errno == ENOENT ? std::error_code{} : systemError(errno);
  if (S_ISDIR(found.st_mode)) return systemError(EISDIR);
  if (!S_ISREG(found.st_mode)) return systemError(EPERM);
  if (faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return systemError(errno);
  permissions = found.st_mode & TemporaryFile::kPermissionBits;
  return {};
}

std::error_code replaceFile(std::filesystem::path target, std::span<const std::uint8_t> bytes) {
  std::optional<mode_t> permissions;
  if (const auto error = followLinks(target)) return error;
  if (const auto error = examine(target, permissions)) return error;

  TemporaryFile file;
  const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
  if (const auto error = file.create(folder)) return error;
  if (permissions) {
    if (const auto error = file.setPermissions(*permissions)) return error;
  }
  if (const auto error = file.write(bytes)) return error;
  return file.takePlaceOf(target);
}

}  // namespace

Result<void> AtomicFileStore::replace(const std::filesystem::path& path,
                                      std::span<const std::uint8_t> bytes) {
  if (const auto error = replaceFile(path, bytes)) {
    return Error{"Writing " + path.string() + " failed: " + error.message() + "."};
  }
  return {};
}

Result<void> AtomicFileStore::remove(const std::filesystem::path& path) {
  struct stat found {};
  int error = lstat(path.c_str(), &found) == 0 ? 0 : errno;
  if (error == 0 && !S_ISREG(found.st_mode) && !S_ISLNK(found.st_mode)) error = EPERM;
  if (error == 0 && unlink(path.c_str()) != 0) error = errno;
  if (error == 0) return {};
  return Error{"Removing " + path.string() + " failed: " + systemError(error).message() + "."};
}

}  // namespace platform
