#pragma once

#include <sys/resource.h>

#include <csignal>

namespace support {

/// No file may grow past this many bytes until the end of the scope, as on a disk that is full.
class ScopedDiskLimit {
 public:
  explicit ScopedDiskLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit now{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &now);
  }
  ~ScopedDiskLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  ScopedDiskLimit(const ScopedDiskLimit&) = delete;
  ScopedDiskLimit& operator=(const ScopedDiskLimit&) = delete;

 private:
  void (*signal_)(int);
  rlimit before_{};
};

}  // namespace support
