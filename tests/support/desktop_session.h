#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace support {

/// Whether the bus starts services that somebody calls.
enum class BusActivation { on, off };

/// A desktop of the test's own: a private run-time folder and a D-Bus session, named in this
/// process's environment, and PipeWire when asked for. Make it before anything looks at those.
class DesktopSession {
 public:
  /// Why this machine cannot do that; none when it can.
  static std::optional<std::string> missing();

  /// `rules`: more of them for a bus without activation, as its configuration writes them.
  explicit DesktopSession(BusActivation activation = BusActivation::on,
                          const std::string& rules = {});

  /// The bus ends as in a crash.
  void killBus();
  /// Another one takes its place.
  void startBus();
  /// It hangs: it takes connections but says nothing, until it is thawed.
  void freezeBus() { bus_->freeze(); }
  void thawBus() { bus_->thaw(); }

  /// PipeWire and its session manager; returns once they answer.
  void startPipeWire();
  /// Ends them as a crash would.
  void killPipeWire();
  /// PipeWire hangs: it takes connections but says nothing, until it is thawed.
  void freezePipeWire() { pipeWire_->freeze(); }
  void thawPipeWire() { pipeWire_->thaw(); }

 private:
  const TemporaryFolder folder_;  // Ends last: the others write into it.
  std::vector<std::string> busCommand_;
  std::unique_ptr<ChildProcess> bus_;
  std::unique_ptr<ChildProcess> pipeWire_;
  std::unique_ptr<ChildProcess> sessionManager_;
};

/// Whether a virtual camera delivers pictures or only looks as if it would.
enum class Pictures { colourBars, none };

/// A camera that PipeWire shows: colour bars, white at the top left and blue at the top right,
/// dark at the bottom left. Raw pictures only: JPEG published in this way brings no frames in
/// PipeWire 0.3.65.
class VirtualCamera {
 public:
  /// `caps`: what it delivers, e.g. "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1".
  explicit VirtualCamera(const std::string& caps, Pictures pictures = Pictures::colourBars);

  void kill() { process_.kill(); }
  void freeze() { process_.freeze(); }

 private:
  ChildProcess process_;
};

}  // namespace support
