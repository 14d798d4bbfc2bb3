#pragma once

#include <gio/gio.h>

#include <chrono>
#include <thread>

#include "platform/portal/handle.h"

namespace platform::portal {

/// A GCancellable that is cancelled after a while, or when another one is: for calls of GIO that
/// take no time-out.
class Deadline {
 public:
  /// `other` outlives this.
  Deadline(GCancellable* other, std::chrono::milliseconds patience);
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;

  GCancellable* cancellable() const { return cancellable_.get(); }
  bool hasPassed() const { return g_cancellable_is_cancelled(cancellable_.get()); }

 private:
  const Handle<GCancellable> cancellable_;
  GCancellable* const other_;
  gulong connection_;
  std::jthread timer_;
};

}  // namespace platform::portal
