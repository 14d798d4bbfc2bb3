#include "platform/ffmpeg/growing_file.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <system_error>
#include <utility>

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/folder.h"

namespace platform::ffmpeg {

Result<std::unique_ptr<GrowingFile>> GrowingFile::create(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (descriptor < 0) return fileError(path, errno);
  struct stat opened {};
  if (::fstat(descriptor, &opened) != 0 || !S_ISREG(opened.st_mode)) {
    ::close(descriptor);
    return fileError(path, EPERM);
  }
  syncFolder(folderOf(path));  // Its name, too, outlives a power cut.
  return std::unique_ptr<GrowingFile>(new GrowingFile(path, descriptor));
}

GrowingFile::GrowingFile(std::filesystem::path path, int descriptor)
    : path_(std::move(path)),
      descriptor_(descriptor),
      syncer_([this](const std::stop_token& stop) { keepSyncing(stop); }) {}

GrowingFile::~GrowingFile() {
  static_cast<void>(finish());
  ::close(descriptor_);
}

Result<void> GrowingFile::append(std::span<const std::uint8_t> piece) {
  {
    const std::lock_guard lock(mutex_);
    if (syncError_ != 0) return fileError(path_, syncError_);
  }
  std::int64_t at = size_;
  while (!piece.empty()) {
    const ssize_t written = ::pwrite(descriptor_, piece.data(), piece.size(), at);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      const int reason = written == 0 ? ENOSPC : errno;
      if (::ftruncate(descriptor_, size_) != 0) return fileError(path_, errno);
      return fileError(path_, reason);
    }
    piece = piece.subspan(static_cast<std::size_t>(written));
    at += written;
  }
  size_ = at;
  const std::lock_guard lock(mutex_);
  dirty_ = true;  // Only now: a sync that begins before may miss the piece.
  return {};
}

Result<void> GrowingFile::finish() {
  if (!syncer_.joinable()) return {};
  syncer_.request_stop();
  syncer_.join();
  if (syncError_ != 0) return fileError(path_, syncError_);
  if (::fdatasync(descriptor_) != 0) return fileError(path_, errno);
  return {};
}

Result<std::filesystem::path> GrowingFile::whereabouts() const {
  struct stat found {};
  if (::fstat(descriptor_, &found) != 0) return fileError(path_, errno);
  if (found.st_nlink == 0) {
    return Error{path_.string() + ": It was removed or replaced before it was finished."};
  }
  std::error_code error;
  auto place = std::filesystem::read_symlink(handle(), error);
  if (error) return fileError(path_, error.value());
  return place;
}

std::filesystem::path GrowingFile::handle() const {
  return "/proc/self/fd/" + std::to_string(descriptor_);
}

void GrowingFile::keepSyncing(const std::stop_token& stop) {
  pthread_setname_np(pthread_self(), "video sync");
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    wake_.wait_for(lock, stop, std::chrono::duration<double>(kSyncSeconds), [] { return false; });
    if (!std::exchange(dirty_, false)) continue;
    lock.unlock();
    const int error = ::fdatasync(descriptor_) == 0 ? 0 : errno;
    lock.lock();
    if (error != 0) syncError_ = error;
  }
}

}  // namespace platform::ffmpeg
