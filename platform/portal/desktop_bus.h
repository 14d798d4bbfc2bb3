#pragma once

#include <gio/gio.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/result.h"

namespace platform::portal {

struct Unref {
  void operator()(GDBusConnection* connection) const { g_object_unref(connection); }
  void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
  void operator()(GSettings* settings) const { g_object_unref(settings); }
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
  void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
  void operator()(GSource* source) const { g_source_unref(source); }
  void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
  void operator()(gchar* text) const { g_free(text); }
};
/// Owns one reference to an object of GLib.
template <class T>
using Handle = std::unique_ptr<T, Unref>;

/// Why a call brought no answer.
enum class BusFailure {
  absent,      ///< Nobody is there who could answer.
  silent,      ///< Somebody is, but did not answer in time.
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
  DesktopBus() : cancellable_(g_cancellable_new()) {}

  /// Waits for the answer at most a few seconds. `arguments` is floating.
  BusAnswer call(const BusMethod& method, GVariant* arguments);

  /// Calls a method of the portal whose answer comes later, when the person has given it, and waits
  /// for that as long as the portal lives. The method takes nothing but the options. The response
  /// code: 0 stands for yes.
  struct Response {
    std::optional<guint32> code;
    BusFailure failure = BusFailure::refused;  ///< Only without a code.
  };
  Response askPerson(const BusMethod& method);

  /// Ends what is under way; whatever is asked afterwards fails.
  void cancel() { g_cancellable_cancel(cancellable_.get()); }

 private:
  bool connect();

  const Handle<GCancellable> cancellable_;
  Handle<GDBusConnection> connection_;  // Null until it is needed.
};

}  // namespace platform::portal
