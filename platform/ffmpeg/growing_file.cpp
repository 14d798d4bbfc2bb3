#include "platform/ffmpeg/growing_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

#include "platform/ffmpeg/av_error.h"

namespace platform::ffmpeg {

Result<std::unique_ptr<GrowingFile>> GrowingFile::create(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (descriptor < 0) return fileError(path, errno);
  struct stat opened {};
  if (::fstat(descriptor, &opened) != 0 || !S_ISREG(opened.st_mode)) {
    ::close(descriptor);
    return fileError(path, EPERM);
  }
  return std::unique_ptr<GrowingFile>(new GrowingFile(path, descriptor));
}

GrowingFile::GrowingFile(std::filesystem::path path, int descriptor)
    : path_(std::move(path)),
      descriptor_(descriptor),
      syncer_([this](const std::stop_token& stop) { keepSyncing(stop); }) {}

GrowingFile::~GrowingFile() {
  static_cast<void>(close());
}

Result<void> GrowingFile::append(std::span<const std::uint8_t> piece) {
  {
    const std::lock_guard lock(mutex_);
    if (syncError_ != 0) return fileError(path_, syncError_);
    dirty_ = true;
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
  return {};
}

Result<void> GrowingFile::close() {
  if (descriptor_ < 0) return {};
  syncer_.request_stop();
  syncer_.join();
  const bool synced = ::fdatasync(descriptor_) == 0;
  const int reason = errno;
  const bool closed = ::close(std::exchange(descriptor_, -1)) == 0;
  if (!synced) return fileError(path_, reason);
  if (!closed) return fileError(path_, errno);
  return {};
}

void GrowingFile::keepSyncing(const std::stop_token& stop) {
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
