#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "tests/support/child_process.h"

namespace support {

/// A desktop of the test's own: a private run-time folder and a D-Bus session, named in this
/// process's environment, and PipeWire when asked for. Make it before anything looks at those.
class DesktopSession {
 public:
  /// Why this machine cannot do that; none when it can.
  static std::optional<std::string> missing();

  DesktopSession();
  ~DesktopSession();

  /// PipeWire and its session manager; returns once they answer.
  void startPipeWire();
  /// Ends them as a crash would.
  void killPipeWire();

  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
  std::unique_ptr<ChildProcess> bus_;
  std::unique_ptr<ChildProcess> pipeWire_;
  std::unique_ptr<ChildProcess> sessionManager_;
};

/// A camera that PipeWire shows: colour bars, white at the top left and blue at the top right,
/// dark at the bottom left.
class VirtualCamera {
 public:
  /// `caps`: what it delivers, e.g. "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1".
  explicit VirtualCamera(const std::string& caps, const std::string& name = "Virtual Camera");

  void kill() { process_.kill(); }
  void freeze() { process_.freeze(); }

 private:
  ChildProcess process_;
};

}  // namespace support
