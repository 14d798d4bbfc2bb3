#include "tests/support/desktop_session.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <thread>
#include <vector>

namespace support {
namespace {

namespace fs = std::filesystem;

void waitForFile(const fs::path& file) {
  for (int i = 0; i < 200 && !fs::exists(file); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
}

bool takesConnections(const fs::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.string().copy(address.sun_path, sizeof address.sun_path - 1);
  const int connection = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const bool taken =
      ::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(connection);
  return taken;
}

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> result;
  for (std::string word; stream >> word;) result.push_back(word);
  return result;
}

std::vector<std::string> cameraCommand(const std::string& caps, Pictures pictures) {
  std::string source = "gst-launch-1.0 -q videotestsrc is-live=true pattern=smpte ! ";
  if (pictures == Pictures::none) source += "valve drop=true drop-mode=forward-sticky-events ! ";
  auto command = words(source + caps + " ! pipewiresink mode=provide");
  command.push_back(
      "stream-properties=p,media.class=Video/Source,media.role=Camera,node.name=virtual-camera,"
      "node.description=\"Virtual\\ Camera\"");
  return command;
}

void writeBusConfiguration(const fs::path& file, const std::string& address,
                           const std::string& rules) {
  std::ofstream(file) << "<busconfig><type>session</type><listen>" << address
                      << "</listen><policy context=\"default\">"
                         "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                         "<allow eavesdrop=\"true\"/><allow own=\"*\"/>"
                      << rules << "</policy></busconfig>";
}

}  // namespace

std::optional<std::string> DesktopSession::missing() {
  for (const char* program : {"dbus-daemon", "pipewire", "wireplumber", "gst-launch-1.0"}) {
    if (!ChildProcess::isInstalled(program)) return std::string(program) + " is not installed";
  }
  return std::nullopt;
}

DesktopSession::DesktopSession(BusActivation activation, const std::string& rules) {
  for (const char* variable : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                               "XDG_STATE_HOME", "XDG_CACHE_HOME", "HOME"}) {
    const fs::path folder =
        std::string(variable) == "XDG_RUNTIME_DIR" ? folder_.path() : folder_ / variable;
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
    setenv(variable, folder.c_str(), 1);
  }
  const std::string address = "unix:path=" + (folder_ / "bus").string();
  setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
  busCommand_ = {"dbus-daemon", "--nofork", "--nopidfile"};
  if (activation == BusActivation::on) {
    busCommand_.insert(busCommand_.end(), {"--session", "--address=" + address});
  } else {
    writeBusConfiguration(folder_ / "bus.conf", address, rules);
    busCommand_.push_back("--config-file=" + (folder_ / "bus.conf").string());
  }
  startBus();
}

void DesktopSession::killBus() {
  bus_.reset();
  fs::remove(folder_ / "bus");
}

void DesktopSession::startBus() {
  bus_ = std::make_unique<ChildProcess>(busCommand_, (folder_ / "bus.log").string());
  // Its socket is there a moment before it listens.
  for (int i = 0; i < 1000 && !takesConnections(folder_ / "bus"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

void DesktopSession::startPipeWire() {
  const auto log = [this](const char* name) { return (folder_ / name).string(); };
  pipeWire_ =
      std::make_unique<ChildProcess>(std::vector<std::string>{"pipewire"}, log("pipewire.log"));
  waitForFile(folder_ / "pipewire-0");
  sessionManager_ = std::make_unique<ChildProcess>(std::vector<std::string>{"wireplumber"},
                                                   log("wireplumber.log"));
  std::this_thread::sleep_for(std::chrono::seconds(1));
}

void DesktopSession::killPipeWire() {
  sessionManager_.reset();
  pipeWire_.reset();
  std::error_code ignored;
  for (const char* socket : {"pipewire-0", "pipewire-0.lock"})
    fs::remove(folder_ / socket, ignored);
}

VirtualCamera::VirtualCamera(const std::string& caps, Pictures pictures)
    : process_(cameraCommand(caps, pictures)) {}

}  // namespace support
