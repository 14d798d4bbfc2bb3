#include "tests/support/access_backend.h"

#include <chrono>

namespace support {
namespace {

constexpr const char* kPath = "/org/freedesktop/portal/desktop";

constexpr const char* kLockdown = "org.freedesktop.impl.portal.Lockdown";
constexpr const char* kLock = "disable-camera";

constexpr const char* kInterfaces = R"(<node>
  <interface name="org.freedesktop.impl.portal.Access">
    <method name="AccessDialog">
      <arg type="o" name="handle" direction="in"/>
      <arg type="s" name="app_id" direction="in"/>
      <arg type="s" name="parent_window" direction="in"/>
      <arg type="s" name="title" direction="in"/>
      <arg type="s" name="subtitle" direction="in"/>
      <arg type="s" name="body" direction="in"/>
      <arg type="a{sv}" name="options" direction="in"/>
      <arg type="u" name="response" direction="out"/>
      <arg type="a{sv}" name="results" direction="out"/>
    </method>
  </interface>
  <interface name="org.freedesktop.impl.portal.Lockdown">
    <property name="disable-printing" type="b" access="read"/>
    <property name="disable-save-to-disk" type="b" access="read"/>
    <property name="disable-application-handlers" type="b" access="read"/>
    <property name="disable-location" type="b" access="read"/>
    <property name="disable-camera" type="b" access="read"/>
    <property name="disable-microphone" type="b" access="read"/>
    <property name="disable-sound-output" type="b" access="read"/>
  </interface>
</node>)";

}  // namespace

AccessBackend::AccessBackend()
    : context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)),
      thread_([this] { run(); }) {
  while (!ready_) std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

AccessBackend::~AccessBackend() {
  g_main_loop_quit(loop_);
  thread_.join();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void AccessBackend::lockCamera(bool locked) {
  cameraLocked_ = locked;
  GVariantBuilder changed;
  g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&changed, "{sv}", kLock, g_variant_new_boolean(locked));
  g_dbus_connection_emit_signal(connection_, nullptr, kPath, "org.freedesktop.DBus.Properties",
                                "PropertiesChanged",
                                g_variant_new("(sa{sv}as)", kLockdown, &changed, nullptr), nullptr);
}

void AccessBackend::run() {
  g_main_context_push_thread_default(context_);
  gchar* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  connection_ = g_dbus_connection_new_for_address_sync(
      address,
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
  g_free(address);
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(kInterfaces, nullptr);
  GDBusInterfaceVTable table{};
  table.method_call = onCall;
  table.get_property = onGet;
  for (int i = 0; i < 2; ++i) {
    g_dbus_connection_register_object(connection_, kPath, node->interfaces[i], &table, this,
                                      nullptr, nullptr);
  }
  const guint owner = g_bus_own_name_on_connection(
      connection_, kName, G_BUS_NAME_OWNER_FLAGS_NONE,
      [](GDBusConnection*, const gchar*, gpointer self) {
        static_cast<AccessBackend*>(self)->ready_ = true;
      },
      nullptr, this, nullptr);
  g_main_loop_run(loop_);
  for (GDBusMethodInvocation* dialog : open_) g_object_unref(dialog);
  g_bus_unown_name(owner);
  g_dbus_node_info_unref(node);
  g_object_unref(connection_);
  g_main_context_pop_thread_default(context_);
}

void AccessBackend::onCall(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                           GVariant*, GDBusMethodInvocation* invocation, gpointer self) {
  auto* backend = static_cast<AccessBackend*>(self);
  ++backend->dialogs;
  if (backend->answer == kNone) return backend->open_.push_back(invocation);
  g_dbus_method_invocation_return_value(
      invocation, g_variant_new("(ua{sv})", static_cast<guint32>(backend->answer), nullptr));
}

GVariant* AccessBackend::onGet(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                               const gchar* property, GError**, gpointer self) {
  const bool isCamera = g_str_equal(property, kLock);
  return g_variant_new_boolean(isCamera && static_cast<AccessBackend*>(self)->cameraLocked_);
}

}  // namespace support
