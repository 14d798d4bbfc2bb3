#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "tests/support/child_process.h"
#include "tests/support/desktop_session.h"
#include "tests/support/temporary_folder.h"

namespace support {

class AccessBackend;

/// A desktop whose portal is the real one, with the real permission store, and asks a back-end of
/// the test's. The portal runs from startPortal() on.
class PortalSession {
 public:
  /// Why this machine cannot do that; none when it can.
  static std::optional<std::string> missing();

  /// `busRules`: what else holds on the bus, as its configuration writes it.
  explicit PortalSession(const std::string& busRules = {});
  ~PortalSession();
  PortalSession(const PortalSession&) = delete;
  PortalSession& operator=(const PortalSession&) = delete;

  /// Each returns once the portal answers, except for what it asks of others.
  void startPortal();
  /// It knows nobody whom it could let ask the person.
  void startPortalThatCannotAsk();

  /// Why a portal cannot be deceived on this machine; none when it can.
  static std::optional<std::string> cannotBeDeceived();
  /// The portal will take this process for one that a launcher started in that unit.
  void deceivePortal(const std::string& unit);
  /// What it reads about this process then.
  std::filesystem::path cgroup() const { return files_ / "cgroup"; }

  /// The bus ends, and all that ran on it.
  void killBus();
  /// Another bus, without a portal.
  void startBus();

  /// Stores an answer for the camera under an application id: "yes", "no" or "ask".
  void store(const std::string& applicationId, const std::string& answer);

  AccessBackend& backend() { return *backend_; }
  ChildProcess& portal() { return *portal_; }
  DesktopSession& desktop() { return desktop_; }

 private:
  void start();
  void startServices();

  const TemporaryFolder files_;
  DesktopSession desktop_;  // Outlives what runs on its bus.
  std::unique_ptr<AccessBackend> backend_;
  std::optional<ChildProcess> store_;
  std::optional<ChildProcess> portal_;
  bool deceives_ = false;
};

}  // namespace support
