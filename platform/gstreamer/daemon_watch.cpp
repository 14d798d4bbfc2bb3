#include "platform/gstreamer/daemon_watch.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace platform::gstreamer {
namespace {

// Where clients of PipeWire look, by its documentation of the environment variables.
std::string socketPath() {
  const char* remote = std::getenv("PIPEWIRE_REMOTE");
  const std::filesystem::path name = remote ? remote : "pipewire-0";
  for (const char* variable : {"PIPEWIRE_RUNTIME_DIR", "XDG_RUNTIME_DIR"}) {
    if (const char* folder = std::getenv(variable)) return std::filesystem::path(folder) / name;
  }
  return name;
}

}  // namespace

DaemonWatch::DaemonWatch() {
  const std::string path = socketPath();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socket_ < 0) return;
  if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return;
  ::close(socket_);
  socket_ = -1;
}

DaemonWatch::~DaemonWatch() {
  if (socket_ >= 0) ::close(socket_);
}

bool DaemonWatch::isAlive() const {
  if (socket_ < 0) return false;
  char unused = 0;
  const auto received = ::recv(socket_, &unused, sizeof unused, MSG_PEEK | MSG_DONTWAIT);
  return received > 0 || (received < 0 && (errno == EAGAIN || errno == EINTR));
}

}  // namespace platform::gstreamer
