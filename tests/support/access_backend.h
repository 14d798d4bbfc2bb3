#pragma once

#include <gio/gio.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace support {

/// The part of a desktop that asks the person and sets the policy, for the portal to use: answers
/// every access dialog as the test says. Has a thread and a D-Bus connection of its own.
class AccessBackend {
 public:
  /// Answers to a dialog.
  static constexpr guint32 kGrant = 0;
  static constexpr guint32 kRefuse = 1;
  static constexpr guint32 kDismiss = 2;
  static constexpr guint32 kNone = 3;  ///< The dialog stays open.

  AccessBackend();
  ~AccessBackend();
  AccessBackend(const AccessBackend&) = delete;
  AccessBackend& operator=(const AccessBackend&) = delete;

  /// The name under which a portal's description lists it.
  static constexpr const char* kName = "org.freedesktop.impl.portal.desktop.test";

  std::atomic<guint32> answer = kGrant;
  std::atomic<int> dialogs = 0;

  /// Sets the policy, and tells those who know the earlier one.
  void lockCamera(bool locked);

 private:
  void run();
  static void onCall(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                     GVariant*, GDBusMethodInvocation* invocation, gpointer self);
  static GVariant* onGet(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                         const gchar* property, GError**, gpointer self);

  GMainContext* const context_;
  GMainLoop* const loop_;
  GDBusConnection* connection_ = nullptr;  // Of the thread until it is ready.
  std::atomic<bool> cameraLocked_ = false;
  std::vector<GDBusMethodInvocation*> open_;  // Dialogs. Of the thread.
  std::atomic<bool> ready_ = false;
  std::jthread thread_;
};

}  // namespace support
