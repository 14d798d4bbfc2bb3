#include "platform/portal/desktop_bus.h"

#include <algorithm>
#include <string>

namespace platform::portal {
namespace {

constexpr int kPatienceMilliseconds = 3000;

BusFailure failureOf(const GError* error) {
  const Handle<gchar> remote(g_dbus_error_get_remote_error(error));
  const std::string name = remote ? remote.get() : "";
  if (name == "org.freedesktop.portal.Error.NotAllowed") return BusFailure::notAllowed;
  for (const GDBusError absence :
       {G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER, G_DBUS_ERROR_UNKNOWN_METHOD,
        G_DBUS_ERROR_UNKNOWN_OBJECT, G_DBUS_ERROR_UNKNOWN_INTERFACE, G_DBUS_ERROR_INVALID_ARGS,
        G_DBUS_ERROR_SPAWN_EXEC_FAILED, G_DBUS_ERROR_SPAWN_CHILD_EXITED,
        G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND, G_DBUS_ERROR_SPAWN_FILE_INVALID}) {
    if (g_error_matches(error, G_DBUS_ERROR, absence)) return BusFailure::absent;
  }
  const bool late = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
                    g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) ||
                    g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT);
  return late ? BusFailure::silent : BusFailure::refused;
}

/// Waits in a loop of its own for the portal's answer to one request.
class ResponseWait {
 public:
  ResponseWait(GDBusConnection* connection, const std::string& path, GCancellable* cancellable)
      : connection_(connection),
        context_(g_main_context_new()),
        loop_(g_main_loop_new(context_.get(), FALSE)) {
    g_main_context_push_thread_default(context_.get());
    subscription_ = g_dbus_connection_signal_subscribe(
        connection, nullptr, "org.freedesktop.portal.Request", "Response", path.c_str(), nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE, responded, this, nullptr);
    cancelled_.reset(g_cancellable_source_new(cancellable));
    g_source_set_callback(cancelled_.get(), G_SOURCE_FUNC(cancelled), this, nullptr);
    g_source_attach(cancelled_.get(), context_.get());
  }

  ~ResponseWait() {
    if (watch_ != 0) g_bus_unwatch_name(watch_);
    g_dbus_connection_signal_unsubscribe(connection_, subscription_);
    g_source_destroy(cancelled_.get());
    g_main_context_pop_thread_default(context_.get());
  }

  ResponseWait(const ResponseWait&) = delete;
  ResponseWait& operator=(const ResponseWait&) = delete;

  /// None when `service` has gone, or the wait was cancelled.
  std::optional<guint32> wait(const char* service) {
    watch_ = g_bus_watch_name_on_connection(connection_, service, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                            nullptr, vanished, this, nullptr);
    if (!code_) g_main_loop_run(loop_.get());
    return code_;
  }

 private:
  static void responded(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                        GVariant* parameters, gpointer self) {
    guint32 code = 0;
    g_variant_get_child(parameters, 0, "u", &code);
    static_cast<ResponseWait*>(self)->code_ = code;
    g_main_loop_quit(static_cast<ResponseWait*>(self)->loop_.get());
  }
  static gboolean cancelled(GCancellable*, gpointer self) {
    g_main_loop_quit(static_cast<ResponseWait*>(self)->loop_.get());
    return G_SOURCE_REMOVE;
  }
  static void vanished(GDBusConnection*, const gchar*, gpointer self) {
    g_main_loop_quit(static_cast<ResponseWait*>(self)->loop_.get());
  }

  GDBusConnection* const connection_;
  const Handle<GMainContext> context_;
  const Handle<GMainLoop> loop_;
  Handle<GSource> cancelled_;
  guint subscription_ = 0;
  guint watch_ = 0;
  std::optional<guint32> code_;
};

}  // namespace

bool DesktopBus::connect() {
  if (connection_) return true;
  const Handle<gchar> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, cancellable_.get(), nullptr));
  if (!address) return false;
  // A connection of our own: the shared one ends the process when the session's bus ends.
  connection_.reset(g_dbus_connection_new_for_address_sync(
      address.get(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, cancellable_.get(), nullptr));
  return connection_ != nullptr;
}

BusAnswer DesktopBus::call(const BusMethod& method, GVariant* arguments) {
  const Handle<GVariant> owned(g_variant_ref_sink(arguments));
  if (!connect()) return {.value = nullptr, .failure = BusFailure::absent};
  GError* error = nullptr;
  Handle<GVariant> value(g_dbus_connection_call_sync(
      connection_.get(), method.service, method.path, method.interface, method.name, owned.get(),
      nullptr, G_DBUS_CALL_FLAGS_NONE, kPatienceMilliseconds, cancellable_.get(), &error));
  if (value) return {.value = std::move(value)};
  const Handle<GError> ownedError(error);
  return {.value = nullptr, .failure = failureOf(error), .message = error->message};
}

// The request's path follows from our name on the bus and a token that we choose, so that its
// answer cannot come before we listen.
DesktopBus::Response DesktopBus::askPerson(const BusMethod& method) {
  if (!connect()) return {.code = std::nullopt, .failure = BusFailure::absent};
  std::string sender = g_dbus_connection_get_unique_name(connection_.get()) + 1;
  std::replace(sender.begin(), sender.end(), '.', '_');
  const std::string token = "wavescribe" + std::to_string(g_random_int());
  ResponseWait wait(connection_.get(),
                    "/org/freedesktop/portal/desktop/request/" + sender + "/" + token,
                    cancellable_.get());
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token.c_str()));
  const BusAnswer accepted = call(method, g_variant_new("(a{sv})", &options));
  if (!accepted) return {.code = std::nullopt, .failure = accepted.failure};
  return {.code = wait.wait(method.service)};
}

}  // namespace platform::portal
