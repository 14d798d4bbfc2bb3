#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace support {

/// A program that runs beside the test and never outlives it.
class ChildProcess {
 public:
  /// `command`: the program, looked up in PATH, and its arguments. What it prints goes to `log`.
  ChildProcess(const std::vector<std::string>& command, const std::string& log = "/dev/null");
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Ends it at once, as a crash would, and waits until it is gone.
  void kill();
  /// Stops it from doing anything, without ending it.
  void freeze();
  /// Lets it go on.
  void thaw();

  /// Whether there is a program of that name in PATH.
  static bool isInstalled(const std::string& program);

 private:
  pid_t pid_ = -1;
};

}  // namespace support
