#include "platform/portal/desktop_bus.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "platform/portal/deadline.h"

namespace platform::portal {
namespace {

constexpr std::array<std::string_view, 6> kAbsences{
    "org.freedesktop.DBus.Error.ServiceUnknown",   "org.freedesktop.DBus.Error.NameHasNoOwner",
    "org.freedesktop.DBus.Error.UnknownMethod",    "org.freedesktop.DBus.Error.UnknownObject",
    "org.freedesktop.DBus.Error.UnknownInterface",
    "org.freedesktop.DBus.Error.InvalidArgs",  // For the property of an interface that is unknown.
};
constexpr std::array<std::string_view, 4> kSilences{
    "org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.Timeout",
    "org.freedesktop.DBus.Error.TimedOut", "org.freedesktop.DBus.Error.Disconnected"};

bool isAmong(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

BusFailure failureOf(const GError* error) {
  const Handle<gchar> remote(g_dbus_error_get_remote_error(error));
  // Nobody has answered: it took too long, was cancelled, or the bus has ended.
  if (!remote) return BusFailure::silent;
  const std::string_view name = remote.get();
  if (name == "org.freedesktop.portal.Error.NotAllowed") return BusFailure::notAllowed;
  // The last two: there is a service of that name, but it cannot be started.
  if (isAmong(kAbsences, name) || name.starts_with("org.freedesktop.DBus.Error.Spawn.") ||
      name.starts_with("org.freedesktop.systemd1.")) {
    return BusFailure::absent;
  }
  return isAmong(kSilences, name) ? BusFailure::silent : BusFailure::refused;
}

// One of our own: the connection that a process shares ends it when the session's bus ends.
Handle<GDBusConnection> newConnection(GCancellable* cancellable) {
  const Handle<gchar> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
  if (!address) return nullptr;
  const auto flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  return Handle<GDBusConnection>(
      g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr, cancellable, nullptr));
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

std::optional<BusFailure> DesktopBus::connect() {
  if (connection_ && !g_dbus_connection_is_closed(connection_.get())) return std::nullopt;
  const Deadline deadline(cancellable_.get(), patience_);
  connection_ = newConnection(deadline.cancellable());
  if (!connection_) return deadline.hasPassed() ? BusFailure::silent : BusFailure::absent;
  if (!shared_) shared_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), nullptr));
  if (shared_) g_dbus_connection_set_exit_on_close(shared_.get(), FALSE);
  return std::nullopt;
}

BusAnswer DesktopBus::call(const BusMethod& method, GVariant* arguments) {
  const Handle<GVariant> owned(g_variant_ref_sink(arguments));
  if (const auto failure = connect()) return {.value = nullptr, .failure = *failure};
  GError* error = nullptr;
  Handle<GVariant> value(
      g_dbus_connection_call_sync(connection_.get(), method.service, method.path, method.interface,
                                  method.name, owned.get(), nullptr, G_DBUS_CALL_FLAGS_NONE,
                                  static_cast<int>(patience_.count()), cancellable_.get(), &error));
  if (value) return {.value = std::move(value)};
  const Handle<GError> ownedError(error);
  return {.value = nullptr, .failure = failureOf(error), .message = error->message};
}

// The request's path follows from our name on the bus and a token that we choose, so that its
// answer cannot come before we listen.
DesktopBus::Response DesktopBus::askPerson(const BusMethod& method) {
  if (const auto failure = connect()) return {.code = std::nullopt, .failure = *failure};
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
