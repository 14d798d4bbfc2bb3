#pragma once

#include <gio/gio.h>

#include <memory>

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

}  // namespace platform::portal
