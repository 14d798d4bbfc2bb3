#pragma once

#include <gio/gio.h>

#include <chrono>
#include <optional>
#include <string>

#include "platform/portal/handle.h"

namespace platform::portal {

/// Why a call brought no answer.
enum class BusFailure {
  absent,      ///< Nobody is there who could answer.
  silent,      ///< Somebody is, but did not answer in time, or ended meanwhile.
  notAllowed,  ///< A policy forbids it.
  refused,     ///< Any other error.
};

/// What came of a call: a value, or the failure.
struct BusAnswer {
  Handle<GVariant> value;
  BusFailure failure = BusFailure::refused;  ///< Only without a value.
  std::string message = {};                  ///< What was said about the failure.

  explicit operator bool() const { return value != nullptr; }
};

/// A method of a service on the session's D-Bus.
struct BusMethod {
  const char* service;
  const char* path;
  const char* interface;
  const char* name;
};

/// The session's D-Bus, asked with a patience that ends. One thread at a time; cancel() from any.
class DesktopBus {
 public:
  /// `patience`: how long each call may take, and connecting.
  explicit DesktopBus(std::chrono::milliseconds patience = std::chrono::seconds(3))
      : patience_(patience), cancellable_(g_cancellable_new()) {}

  /// Connects, unless that has been done and the bus has lived since; calls do so themselves. The
  /// failure, if any: absent, or silent for a bus that hangs.
  std::optional<BusFailure> connect();

  /// Waits for the answer. `arguments` is floating.
  BusAnswer call(const BusMethod& method, GVariant* arguments);

  /// Calls a method of the portal whose answer comes later, when the person has given it, and waits
  /// for that as long as the portal lives. The method takes nothing but the options. The response
  /// code: 0 stands for yes.
  struct Response {
    std::optional<guint32> code;
    BusFailure failure = BusFailure::silent;  ///< Only without a code.
  };
  Response askPerson(const BusMethod& method);

  /// Ends what is under way; whatever is asked afterwards fails.
  void cancel() { g_cancellable_cancel(cancellable_.get()); }

 private:
  const std::chrono::milliseconds patience_;
  const Handle<GCancellable> cancellable_;
  Handle<GDBusConnection> connection_;  // Null until it is needed.
  // The one that the process shares, over which settings listen for changes. Kept for having been
  // told not to end the process with the bus.
  Handle<GDBusConnection> shared_;
};

}  // namespace platform::portal
