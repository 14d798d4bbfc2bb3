#pragma once

namespace platform::gstreamer {

/// Knows whether PipeWire's daemon lives, by a connection over which nothing is ever said: its end
/// is the only sign that the daemon gives.
class DaemonWatch {
 public:
  /// Connects to the daemon, if there is one.
  DaemonWatch();
  ~DaemonWatch();
  DaemonWatch(const DaemonWatch&) = delete;
  DaemonWatch& operator=(const DaemonWatch&) = delete;

  /// True as long as the daemon lives that was there at the beginning.
  bool isAlive() const;

 private:
  int socket_ = -1;
};

}  // namespace platform::gstreamer
